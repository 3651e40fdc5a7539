// `rte decompress`: unpacks a file written by `rte compress`.
#include "Command.h"
#include "CompressionTool.h"

#include <QDataStream>
#include <QFile>
#include <QSaveFile>

#include <vector>

namespace
{

int fail(const QString& text)
{
  rte::err() << "\nrte decompress: " << text << "\n";
  return 1;
}

int runDecompress(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral(
      "Decompresses a file written by `rte compress`; the codec and its parameters come from the file."));
  parser.addHelpOption();
  const QCommandLineOption codecOption(QStringList{QStringLiteral("c"), QStringLiteral("codec")},
                                       QStringLiteral("Fail unless the file was packed by <name>."),
                                       QStringLiteral("name"));
  const QCommandLineOption paramOption(QStringList{QStringLiteral("p"), QStringLiteral("param")},
                                       QStringLiteral("Override a parameter stored in the file."),
                                       QStringLiteral("key=value"));
  parser.addOption(codecOption);
  parser.addOption(paramOption);
  parser.addPositionalArgument(QStringLiteral("input"), QStringLiteral("The compressed file."));
  parser.addPositionalArgument(QStringLiteral("output"), QStringLiteral("The raw file to write."));
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  const QStringList files = parser.positionalArguments();
  if (files.size() != 2)
  {
    rte::err() << "rte decompress: needs an input and an output file\n";
    return 2;
  }
  const auto overrides = rte::parseParameters(parser.values(paramOption), QStringLiteral("decompress"));
  if (!overrides)
    return 2;

  QFile input(files[0]);
  if (!input.open(QIODevice::ReadOnly))
    return fail(QStringLiteral("cannot read %1: %2").arg(files[0], input.errorString()));
  const auto total = static_cast<unsigned long long>(input.size());
  QDataStream stream(&input);
  stream.setByteOrder(QDataStream::LittleEndian);
  QByteArray magic(rte::compressedFileMagic.size(), '\0');
  quint8 version = 0, nameLength = 0;
  stream.readRawData(magic.data(), static_cast<int>(magic.size()));
  stream >> version >> nameLength;
  QByteArray name(nameLength, '\0');
  stream.readRawData(name.data(), nameLength);
  quint32 parameterLength = 0;
  stream >> parameterLength;
  if (stream.status() != QDataStream::Ok || magic != rte::compressedFileMagic ||
      version != rte::compressedFileVersion || parameterLength > total)
    return fail(QStringLiteral("%1 was not written by rte compress").arg(files[0]));
  QByteArray parameterText(static_cast<qsizetype>(parameterLength), '\0');
  stream.readRawData(parameterText.data(), static_cast<int>(parameterLength));

  const QString codecName = QString::fromUtf8(name);
  if (parser.isSet(codecOption) && parser.value(codecOption) != codecName)
    return fail(QStringLiteral("%1 was packed by %2, not %3").arg(files[0], codecName, parser.value(codecOption)));
  const auto codec = rte::createCodec(codecName);
  if (!codec)
    return fail(QStringLiteral("no compressor '%1' for %2").arg(codecName, files[0]));
  QStringList stored;
  for (const QByteArray& line : parameterText.split('\n'))
    if (!line.isEmpty())
      stored << QString::fromUtf8(line);
  const auto parameters = rte::parseParameters(stored, QStringLiteral("decompress"));
  if (!parameters)
    return 1;
  codec->SetParameters(*parameters);
  codec->SetParameters(*overrides);
  const unsigned long long columns = codec->GetParameters().value(QStringLiteral("Columns")).toULongLong();

  QSaveFile output(files[1]);
  if (!output.open(QIODevice::WriteOnly))
    return fail(QStringLiteral("cannot write %1: %2").arg(files[1], output.errorString()));
  rte::Progress progress(QStringLiteral("decompressing"), total);
  std::vector<char> packed, raw;
  unsigned long long written = 0;
  while (!stream.atEnd())
  {
    quint64 rawSize = 0, packedSize = 0;
    stream >> rawSize >> packedSize;
    if (stream.status() != QDataStream::Ok || rawSize > rte::largestReadBlock ||
        packedSize > total - static_cast<unsigned long long>(input.pos()))
      return fail(QStringLiteral("%1 is damaged at byte %2").arg(files[0]).arg(input.pos()));
    packed.resize(std::max<quint64>(packedSize, 1));
    raw.resize(std::max<quint64>(rawSize, 1));
    stream.readRawData(packed.data(), static_cast<int>(packedSize));
    if (rte::usesRows(*codec))
    {
      if (columns != 0)
        rte::setBlockShape(*codec, columns, rawSize / (2 * columns));
      else
        rte::setBlockShape(*codec, rawSize / 2, 1);
    }
    unsigned long long size = rawSize;
    const uint32_t code = codec->Decompress(packed.data(), packedSize, raw.data(), size);
    if (code != 0 || size != rawSize)
      return fail(QStringLiteral("%1 failed on the block at byte %2: %3 (code %4)")
                      .arg(codecName)
                      .arg(written)
                      .arg(code != 0 ? codec->GetErrorText(code) : QStringLiteral("wrong size"))
                      .arg(code));
    if (output.write(raw.data(), static_cast<qint64>(rawSize)) != static_cast<qint64>(rawSize))
      return fail(QStringLiteral("writing %1 failed: %2").arg(files[1], output.errorString()));
    written += rawSize;
    progress.advance(static_cast<unsigned long long>(input.pos()));
  }
  if (!output.commit())
    return fail(QStringLiteral("writing %1 failed: %2").arg(files[1], output.errorString()));
  rte::out() << files[0] << ": " << written << " bytes unpacked with " << codecName << "\n";
  return 0;
}

const rte::CommandRegistration registration{
    {QStringLiteral("decompress"), QStringLiteral("Decompress a file written by rte compress"), &runDecompress}};

} // namespace
