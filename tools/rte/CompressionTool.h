// Shared by the compress, decompress and codecs commands and the compression demo step.
//
// File format of `rte compress` (little-endian): "RTECMP", version byte 1, the codec's
// name (length byte, bytes), the parameters as UTF-8 "key=value" lines (32-bit length,
// text), then blocks: raw size (64 bits), packed size (64 bits), the codec's packed bytes.
// Blocks hold whole rows (at most about 16 MiB raw), so large files show progress and
// need no more memory than a block.
#pragma once

#include <Core/Common/Compression/I_Compression.h>

#include <QCommandLineParser>
#include <QStringList>

#include <memory>
#include <optional>

namespace rte
{

// A codec of the domain "Tarvell.Compression" by name, or null.
std::shared_ptr<RTE::I_Compression> createCodec(const QString& name);
// Names of all registered codecs, in registration order.
QStringList codecNames();

// "key=value" texts to a parameter map: "true"/"false" become booleans, whole numbers
// numbers. Returns nothing (and tells err) for a text without "=" or with another value.
std::optional<QVariantMap> parseParameters(const QStringList& texts, const QString& command);

// Sets Columns and Rows for codecs that lay the block out in rows (IMX, FixedBitsOfWord).
void setBlockShape(RTE::I_Compression& codec, unsigned long long columns, unsigned long long rows);
// True when the codec works on rows.
bool usesRows(const RTE::I_Compression& codec);

// Prints "\r<what>: NN%" to err when the file is large, and a newline at 100%.
class Progress
{
public:
  Progress(QString what, unsigned long long total);
  void advance(unsigned long long done);

private:
  QString m_what;
  unsigned long long m_total;
  bool m_shown;
  int m_last = -1;
};

} // namespace rte

namespace rte
{

// The start of a file written by `rte compress`.
inline const QByteArray compressedFileMagic = QByteArrayLiteral("RTECMP");
constexpr char compressedFileVersion = 1;
// Largest raw block `rte compress` writes; `rte decompress` refuses larger ones.
constexpr unsigned long long largestBlock = 16ULL << 20;
constexpr unsigned long long largestReadBlock = 1ULL << 30;

} // namespace rte
