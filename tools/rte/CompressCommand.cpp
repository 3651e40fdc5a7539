// `rte compress`: packs a file with a compressor, block by block (format in
// CompressionTool.h), showing progress on large files.
#include "Command.h"
#include "CompressionTool.h"

#include <QDataStream>
#include <QFile>
#include <QSaveFile>

#include <vector>

namespace
{

int runCompress(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Compresses a file of 16-bit words with one of the compressors (see `rte codecs`).\n"
                     "Codecs that work on rows (IMX, FixedBitsOfWord) need the file to hold whole rows of\n"
                     "Columns words; Rows is set per block."));
  parser.addHelpOption();
  const QCommandLineOption codecOption(QStringList{QStringLiteral("c"), QStringLiteral("codec")},
                                       QStringLiteral("The compressor's <name>."), QStringLiteral("name"));
  const QCommandLineOption paramOption(QStringList{QStringLiteral("p"), QStringLiteral("param")},
                                       QStringLiteral("A parameter, e.g. Columns=2048 or FixedWrapping=true."),
                                       QStringLiteral("key=value"));
  parser.addOption(codecOption);
  parser.addOption(paramOption);
  parser.addPositionalArgument(QStringLiteral("input"), QStringLiteral("The raw file."));
  parser.addPositionalArgument(QStringLiteral("output"), QStringLiteral("The compressed file to write."));
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  const QStringList files = parser.positionalArguments();
  if (files.size() != 2 || !parser.isSet(codecOption))
  {
    rte::err() << "rte compress: needs --codec, an input and an output file\n";
    return 2;
  }
  const auto codec = rte::createCodec(parser.value(codecOption));
  if (!codec)
  {
    rte::err() << "rte compress: no compressor '" << parser.value(codecOption) << "' (there are "
               << rte::codecNames().join(QStringLiteral(", ")) << ")\n";
    return 2;
  }
  const auto parameters = rte::parseParameters(parser.values(paramOption), QStringLiteral("compress"));
  if (!parameters)
    return 2;
  codec->SetParameters(*parameters);

  QFile input(files[0]);
  if (!input.open(QIODevice::ReadOnly))
  {
    rte::err() << "rte compress: cannot read " << files[0] << ": " << input.errorString() << "\n";
    return 1;
  }
  const auto total = static_cast<unsigned long long>(input.size());
  const unsigned long long columns = codec->GetParameters().value(QStringLiteral("Columns")).toULongLong();
  unsigned long long blockSize = rte::largestBlock;
  if (rte::usesRows(*codec))
  {
    if (columns == 0)
    {
      blockSize = std::max<unsigned long long>(total, 1);
    }
    else
    {
      if (total % (2 * columns) != 0)
      {
        rte::err() << "rte compress: " << total << " bytes are no whole number of rows of " << columns << " words\n";
        return 1;
      }
      blockSize = std::max<unsigned long long>(rte::largestBlock / (2 * columns), 1) * 2 * columns;
    }
  }

  QSaveFile output(files[1]);
  if (!output.open(QIODevice::WriteOnly))
  {
    rte::err() << "rte compress: cannot write " << files[1] << ": " << output.errorString() << "\n";
    return 1;
  }
  QDataStream stream(&output);
  stream.setByteOrder(QDataStream::LittleEndian);
  const QByteArray name = QByteArray::fromStdString(codec->GetName());
  QByteArray parameterText;
  const QVariantMap used = codec->GetParameters();
  for (auto it = used.begin(); it != used.end(); ++it)
    if (it.key() != QLatin1String("Size") && it.key() != QLatin1String("Rows"))
      parameterText += it.key().toUtf8() + '=' + it.value().toString().toUtf8() + '\n';
  stream.writeRawData(rte::compressedFileMagic.constData(), static_cast<int>(rte::compressedFileMagic.size()));
  stream << static_cast<quint8>(rte::compressedFileVersion) << static_cast<quint8>(name.size());
  stream.writeRawData(name.constData(), static_cast<int>(name.size()));
  stream << static_cast<quint32>(parameterText.size());
  stream.writeRawData(parameterText.constData(), static_cast<int>(parameterText.size()));

  rte::Progress progress(QStringLiteral("compressing"), total);
  std::vector<char> packed;
  unsigned long long done = 0;
  unsigned long long packedTotal = 0;
  while (done < total || (done == 0 && total == 0))
  {
    const QByteArray raw = input.read(static_cast<qint64>(std::min(blockSize, total - done)));
    if (raw.size() == 0 && total != 0)
    {
      rte::err() << "rte compress: reading " << files[0] << " failed: " << input.errorString() << "\n";
      return 1;
    }
    const auto rawSize = static_cast<unsigned long long>(raw.size());
    if (columns != 0)
      rte::setBlockShape(*codec, columns, rawSize / (2 * columns));
    packed.resize(std::max<unsigned long long>(codec->GetMaxCompressedSize(rawSize), 1));
    unsigned long long packedSize = packed.size();
    const uint32_t code = codec->Compress(raw.constData(), rawSize, packed.data(), packedSize);
    if (code != 0)
    {
      rte::err() << "\nrte compress: " << QString::fromStdString(codec->GetName()) << " failed at byte " << done << ": "
                 << codec->GetErrorText(code) << " (code " << code << ")\n";
      return 1;
    }
    stream << static_cast<quint64>(rawSize) << static_cast<quint64>(packedSize);
    stream.writeRawData(packed.data(), static_cast<int>(packedSize));
    done += rawSize;
    packedTotal += packedSize;
    progress.advance(done);
    if (total == 0)
      break;
  }
  if (stream.status() != QDataStream::Ok || !output.commit())
  {
    rte::err() << "rte compress: writing " << files[1] << " failed: " << output.errorString() << "\n";
    return 1;
  }
  rte::out() << files[0] << ": " << total << " bytes -> " << packedTotal << " bytes packed with "
             << QString::fromStdString(codec->GetName());
  if (packedTotal != 0)
    rte::out()
        << QStringLiteral(" (ratio %1)").arg(static_cast<double>(total) / static_cast<double>(packedTotal), 0, 'f', 2);
  rte::out() << "\n";
  return 0;
}

const rte::CommandRegistration registration{
    {QStringLiteral("compress"), QStringLiteral("Compress a file of 16-bit words with a compressor"), &runCompress}};

} // namespace
