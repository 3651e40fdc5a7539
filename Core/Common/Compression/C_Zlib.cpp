#include <Core/Common/Compression/C_Zlib.h>

#include <Core/Common/Compression/CompressionChecks_p.h>

#include <QCoreApplication>

#include <zlib.h>

#include <limits>

namespace RTE
{

namespace
{

constexpr unsigned long long largestLength = std::numeric_limits<uLong>::max();

// zlib reads through a pointer even for an empty block.
const Bytef* sourceBytes(const void* source)
{
  static const Bytef none = 0;
  return source != nullptr ? static_cast<const Bytef*>(source) : &none;
}

} // namespace

std::string C_Zlib::GetName() const
{
  return "Zlib";
}

std::string C_Zlib::GetDescription() const
{
  return "Zlib memory compression";
}

unsigned long long C_Zlib::GetMaxCompressedSize(unsigned long long sourceSize)
{
  if (sourceSize > std::numeric_limits<uint32_t>::max())
    return 0;
  return compressBound(static_cast<uLong>(sourceSize));
}

void C_Zlib::SetParameters(const QVariantMap&) {}

QVariantMap C_Zlib::GetParameters() const
{
  return {};
}

uint32_t C_Zlib::Compress(const void* source, unsigned long long sourceSize, void* destination,
                          unsigned long long& destinationSize)
{
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  if (sourceSize > largestLength)
    return CompressionChecks::fail(ErrorSourceTooLarge, destinationSize);
  uLongf length = static_cast<uLongf>(std::min(destinationSize, largestLength));
  const int result =
      compress(static_cast<Bytef*>(destination), &length, sourceBytes(source), static_cast<uLong>(sourceSize));
  destinationSize = length;
  return result < 0 ? static_cast<uint32_t>(result) : ErrorNone;
}

uint32_t C_Zlib::Decompress(const void* source, unsigned long long sourceSize, void* destination,
                            unsigned long long& destinationSize)
{
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  if (sourceSize > largestLength)
    return CompressionChecks::fail(ErrorSourceTooLarge, destinationSize);
  uLongf length = static_cast<uLongf>(std::min(destinationSize, largestLength));
  const int result =
      uncompress(static_cast<Bytef*>(destination), &length, sourceBytes(source), static_cast<uLong>(sourceSize));
  destinationSize = length;
  return result < 0 ? static_cast<uint32_t>(result) : ErrorNone;
}

QString C_Zlib::GetErrorText(uint32_t code) const
{
  const char* text = nullptr;
  switch (static_cast<int32_t>(code))
  {
  case Z_ERRNO:
    text = QT_TRANSLATE_NOOP("RTE::C_Zlib", "Zlib: Z_ERRNO");
    break;
  case Z_STREAM_ERROR:
    text = QT_TRANSLATE_NOOP("RTE::C_Zlib", "Zlib: Z_STREAM_ERROR");
    break;
  case Z_DATA_ERROR:
    text = QT_TRANSLATE_NOOP("RTE::C_Zlib", "Zlib: Z_DATA_ERROR");
    break;
  case Z_MEM_ERROR:
    text = QT_TRANSLATE_NOOP("RTE::C_Zlib", "Zlib: Z_MEM_ERROR");
    break;
  case Z_BUF_ERROR:
    text = QT_TRANSLATE_NOOP("RTE::C_Zlib", "Zlib: Z_BUF_ERROR");
    break;
  case Z_VERSION_ERROR:
    text = QT_TRANSLATE_NOOP("RTE::C_Zlib", "Zlib: Z_VERSION_ERROR");
    break;
  default:
  {
    const QString common = CommonErrorText(code);
    return common.isNull() ? NoErrorText() : common;
  }
  }
  return QCoreApplication::translate("RTE::C_Zlib", text);
}

} // namespace RTE
