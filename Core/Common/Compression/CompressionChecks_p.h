// Checks shared by the compressors; not installed.
#pragma once

#include <Core/Common/Compression/I_Compression.h>

#include <QVariant>

#include <cstring>

namespace RTE::CompressionChecks
{

// The first checks of every Compress and Decompress: a destination, and a source
// wherever the source size says there is one.
inline uint32_t buffers(const void* source, unsigned long long sourceSize, const void* destination)
{
  if (destination == nullptr)
    return I_Compression::ErrorNoDestination;
  if (source == nullptr && sourceSize != 0)
    return I_Compression::ErrorNoSource;
  return I_Compression::ErrorNone;
}

// Reports a failure: nothing counts as written.
inline uint32_t fail(uint32_t code, unsigned long long& destinationSize)
{
  destinationSize = 0;
  return code;
}

// Copies n bytes; a no-op for n == 0 (memcpy wants valid pointers even then).
inline void copyBytes(void* destination, const void* source, unsigned long long n)
{
  if (n != 0)
    std::memcpy(destination, source, static_cast<std::size_t>(n));
}

// A non-negative whole number from a parameter map; false for anything else.
inline bool readCount(const QVariantMap& parameters, const char* key, unsigned long long& value)
{
  const auto it = parameters.constFind(QString::fromLatin1(key));
  if (it == parameters.constEnd())
    return false;
  bool ok = false;
  const qlonglong number = it->toLongLong(&ok);
  if (!ok || number < 0)
    return false;
  value = static_cast<unsigned long long>(number);
  return true;
}

inline bool readFlag(const QVariantMap& parameters, const char* key, bool& value)
{
  const auto it = parameters.constFind(QString::fromLatin1(key));
  if (it == parameters.constEnd())
    return false;
  value = it->toBool();
  return true;
}

} // namespace RTE::CompressionChecks
