// Demo step: the compressors on a generated camera-like image.
#include "Command.h"
#include "CompressionTool.h"

#include <Core/Common/Compression/CompressionBlockSize.h>
#include <Core/Common/Exceptions/DataSizeTooLargeForCompression.h>

#include <cmath>
#include <random>
#include <vector>

namespace
{

std::vector<char> testImage(unsigned columns, unsigned rows)
{
  // Smooth background, shot noise and a grid of bright spots in a 12-bit range.
  std::mt19937 random(42);
  std::normal_distribution<double> noise(0.0, 1.0);
  std::vector<char> bytes(2ULL * columns * rows);
  for (unsigned r = 0; r < rows; ++r)
    for (unsigned c = 0; c < columns; ++c)
    {
      const double dx = (c % 64) - 32.0, dy = (r % 64) - 32.0;
      const double signal = 200.0 + 0.5 * r + 0.25 * c + 3000.0 * std::exp(-(dx * dx + dy * dy) / 18.0);
      const auto value = static_cast<unsigned>(std::clamp(signal + noise(random) * std::sqrt(signal), 0.0, 4095.0));
      bytes[2 * (static_cast<std::size_t>(r) * columns + c)] = static_cast<char>(value & 0xFF);
      bytes[2 * (static_cast<std::size_t>(r) * columns + c) + 1] = static_cast<char>(value >> 8);
    }
  return bytes;
}

void demoCompression(QTextStream& out)
{
  const unsigned columns = 512, rows = 512;
  const std::vector<char> image = testImage(columns, rows);
  out << "Six compressors register themselves with the plug-in factory when the library loads.\n"
         "Each packs a "
      << columns << " x " << rows << " test image of 12-bit values in 16-bit words (" << image.size() << " bytes):\n\n";
  for (const QString& name : rte::codecNames())
  {
    const auto codec = rte::createCodec(name);
    rte::setBlockShape(*codec, columns, rows);
    std::vector<char> packed(codec->GetMaxCompressedSize(image.size()));
    unsigned long long packedSize = packed.size();
    uint32_t code = codec->Compress(image.data(), image.size(), packed.data(), packedSize);
    std::vector<char> back(image.size());
    unsigned long long backSize = back.size();
    if (code == 0)
      code = codec->Decompress(packed.data(), packedSize, back.data(), backSize);
    out << "  " << name.leftJustified(16) << " ";
    if (code != 0)
    {
      out << "failed: " << codec->GetErrorText(code) << "\n";
      continue;
    }
    out << QString::number(packedSize).rightJustified(7) << " bytes, ratio "
        << QString::number(static_cast<double>(image.size()) / static_cast<double>(packedSize), 'f', 2) << ", "
        << (back == image ? "comes back exactly" : "comes back changed") << "\n";
  }

  out << "\nA destination that is too small is refused, never overrun:\n";
  const auto imx = rte::createCodec(QStringLiteral("IMX"));
  rte::setBlockShape(*imx, columns, rows);
  std::vector<char> tiny(100);
  unsigned long long tinySize = tiny.size();
  const uint32_t code = imx->Compress(image.data(), image.size(), tiny.data(), tinySize);
  out << "  IMX into 100 bytes: code 0x" << QString::number(code, 16) << ", \"" << imx->GetErrorText(code) << "\"\n";

  out << "\nThe 12bit format keeps the low 12 bits of each word, two words in three bytes:\n";
  const auto twelve = rte::createCodec(QStringLiteral("12bit"));
  const unsigned char words[] = {0xBC, 0x0A, 0x23, 0x01};
  unsigned char packed[3];
  unsigned long long packedSize = sizeof packed;
  twelve->Compress(words, sizeof words, packed, packedSize);
  out << "  0x0ABC, 0x0123 -> " << QByteArray(reinterpret_cast<const char*>(packed), 3).toHex(' ') << "\n";

  out << "\nA block too large for LZ4 is refused before anything is written:\n";
  try
  {
    RTE::RequireCompressibleBlock(3, *rte::createCodec(QStringLiteral("LZ4")), 3'000'000'000ULL);
  }
  catch (const RTE::DataSizeTooLargeForCompression& e)
  {
    out << "  " << e.message() << "\n";
  }
}

const rte::DemoStepRegistration step{{80, QStringLiteral("Compressors"), &demoCompression}};

} // namespace
