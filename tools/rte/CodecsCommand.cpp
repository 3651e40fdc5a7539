// `rte codecs`: lists the compressors, and `rte codecs bench FILE --width W` measures
// each on a raw 16-bit image: ratio and MB/s both ways, with memcpy's MB/s beside them.
#include "Command.h"
#include "CompressionTool.h"

#include <Core/Common/Plugins/C_PluginFactory.h>

#include <QElapsedTimer>
#include <QFile>

#include <cstring>
#include <vector>

namespace
{

// Seconds per call of work, repeated until about a fifth of a second has passed.
template <typename Work>
double secondsPerCall(Work&& work)
{
  QElapsedTimer timer;
  timer.start();
  int calls = 0;
  do
  {
    if (!work())
      return -1;
    ++calls;
  } while (timer.nsecsElapsed() < 200'000'000 || calls < 3);
  return static_cast<double>(timer.nsecsElapsed()) / 1e9 / calls;
}

QString megabytesPerSecond(double bytes, double seconds)
{
  return seconds <= 0 ? QStringLiteral("-") : QString::number(bytes / seconds / 1e6, 'f', 0);
}

int listCodecs()
{
  auto& factory = RTE::C_PluginFactory::GetInstance();
  const auto descriptions = factory.GetListOfPluginDescriptions("Tarvell.Compression");
  const QStringList names = rte::codecNames();
  rte::out() << "Compressors (\"Tarvell.Compression\"):\n";
  for (qsizetype i = 0; i < names.size(); ++i)
  {
    const auto codec = rte::createCodec(names[i]);
    QStringList parameters;
    const QVariantMap values = codec ? codec->GetParameters() : QVariantMap();
    for (auto it = values.begin(); it != values.end(); ++it)
      parameters << it.key() + QLatin1Char('=') + it.value().toString();
    rte::out() << "  " << names[i].leftJustified(16) << " "
               << QString::fromStdString(descriptions[static_cast<std::size_t>(i)]) << "\n";
    if (!parameters.isEmpty())
      rte::out() << "  " << QString(16, QLatin1Char(' ')) << " parameters: " << parameters.join(QStringLiteral(", "))
                 << "\n";
  }
  return 0;
}

int bench(const QString& path, unsigned long long width)
{
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
  {
    rte::err() << "rte codecs bench: cannot read " << path << ": " << file.errorString() << "\n";
    return 1;
  }
  const QByteArray image = file.readAll();
  const auto size = static_cast<unsigned long long>(image.size());
  if (width == 0 || size == 0 || size % (2 * width) != 0)
  {
    rte::err() << "rte codecs bench: " << size << " bytes are no whole number of rows of " << width << " words\n";
    return 1;
  }
  const unsigned long long rows = size / (2 * width);
  rte::out() << path << ": " << width << " x " << rows << " words\n";

  std::vector<char> copy(size);
  const double memcpySeconds = secondsPerCall(
      [&]
      {
        std::memcpy(copy.data(), image.constData(), size);
        return copy[size / 2] == image[static_cast<qsizetype>(size / 2)];
      });
  rte::out() << QStringLiteral("%1 %2 %3 %4  %5\n")
                    .arg(QStringLiteral("codec"), -16)
                    .arg(QStringLiteral("ratio"), 7)
                    .arg(QStringLiteral("pack MB/s"), 10)
                    .arg(QStringLiteral("unpack MB/s"), 12)
                    .arg(QStringLiteral("round trip"));
  rte::out() << QStringLiteral("%1 %2 %3 %4\n")
                    .arg(QStringLiteral("memcpy"), -16)
                    .arg(QStringLiteral("1.00"), 7)
                    .arg(megabytesPerSecond(static_cast<double>(size), memcpySeconds), 10)
                    .arg(QString(), 12);

  for (const QString& name : rte::codecNames())
  {
    const auto codec = rte::createCodec(name);
    rte::setBlockShape(*codec, width, rows);
    std::vector<char> packed(std::max<unsigned long long>(codec->GetMaxCompressedSize(size), 1));
    unsigned long long packedSize = 0;
    uint32_t code = 0;
    const double packSeconds = secondsPerCall(
        [&]
        {
          packedSize = packed.size();
          code = codec->Compress(image.constData(), size, packed.data(), packedSize);
          return code == 0;
        });
    QString roundTrip;
    double unpackSeconds = -1;
    if (code != 0)
    {
      roundTrip = codec->GetErrorText(code);
    }
    else
    {
      std::fill(copy.begin(), copy.end(), 0);
      unpackSeconds = secondsPerCall(
          [&]
          {
            unsigned long long unpackedSize = size;
            code = codec->Decompress(packed.data(), packedSize, copy.data(), unpackedSize);
            return code == 0 && unpackedSize == size;
          });
      roundTrip = code != 0                                                ? codec->GetErrorText(code)
                  : std::memcmp(copy.data(), image.constData(), size) == 0 ? QStringLiteral("exact")
                                                                           : QStringLiteral("lossy");
    }
    const double ratio = packedSize == 0 ? 0.0 : static_cast<double>(size) / static_cast<double>(packedSize);
    rte::out() << QStringLiteral("%1 %2 %3 %4  %5\n")
                      .arg(name, -16)
                      .arg(ratio, 7, 'f', 2)
                      .arg(megabytesPerSecond(static_cast<double>(size), packSeconds), 10)
                      .arg(megabytesPerSecond(static_cast<double>(size), unpackSeconds), 12)
                      .arg(roundTrip);
  }
  return 0;
}

int runCodecs(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Lists the compressors.\n"
                     "  rte codecs bench FILE --width W   measures every compressor on a raw image of\n"
                     "                                    16-bit words, W words per row, beside memcpy."));
  parser.addHelpOption();
  const QCommandLineOption widthOption(QStringList{QStringLiteral("w"), QStringLiteral("width")},
                                       QStringLiteral("Words per row of the image."), QStringLiteral("words"));
  parser.addOption(widthOption);
  parser.addPositionalArgument(QStringLiteral("bench"), QStringLiteral("Measure the compressors."),
                               QStringLiteral("[bench FILE]"));
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  const QStringList positional = parser.positionalArguments();
  if (positional.isEmpty())
    return listCodecs();
  bool ok = false;
  const unsigned long long width = parser.value(widthOption).toULongLong(&ok);
  if (positional.size() != 2 || positional[0] != QLatin1String("bench") || !ok || width == 0)
  {
    rte::err() << "rte codecs: use `rte codecs` or `rte codecs bench FILE --width W`\n";
    return 2;
  }
  return bench(positional[1], width);
}

const rte::CommandRegistration registration{
    {QStringLiteral("codecs"), QStringLiteral("List the compressors, or measure them on an image"), &runCodecs}};

} // namespace
