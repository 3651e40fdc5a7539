// What all six compressors share: registration, names, the shared error codes, the
// wrappers of zlib and LZ4, and round trips of edge images.
#include "CompressionTestSupport.h"

#include <Core/Common/Compression/C_LZ4.h>
#include <Core/Common/Compression/C_Zlib.h>
#include <Core/Common/Compression/CompressionBlockSize.h>
#include <Core/Common/Exceptions/DataSizeTooLargeForCompression.h>

#include <lz4.h>
#include <zlib.h>

namespace
{

using RTE::I_Compression;

const std::vector<std::string> allNames{"12bit", "FixedBitsOfWord", "IMX", "LZ4", "Uncompressed", "Zlib"};

// Parameters that make every codec lossless for a block of rows x columns words.
void setUp(I_Compression& codec, std::size_t columns, std::size_t rows)
{
  if (codec.GetName() == "FixedBitsOfWord")
    codec.SetParameters({{"FixedBits", 16}, {"Columns", qulonglong(columns)}, {"Rows", qulonglong(rows)}});
  if (codec.GetName() == "IMX")
    codec.SetParameters({{"Columns", qulonglong(columns)}, {"Rows", qulonglong(rows)}});
}

} // namespace

TEST(Compressors, AreRegisteredAtLoadTime)
{
  auto& factory = RTE::C_PluginFactory::GetInstance();
  EXPECT_EQ(factory.GetListOfPluginTypes("Tarvell.Compression"), allNames);
  EXPECT_EQ(factory.GetListOfPluginDescriptions("Tarvell.Compression"),
            (std::vector<std::string>{"Word to 12bit memory compression", "Word to 8 or 12 bit compression",
                                      "IMX memory compression", "LZ4 memory compression",
                                      "Uncompressed memory compression", "Zlib memory compression"}));
  for (const std::string& name : allNames)
  {
    SCOPED_TRACE(name);
    const auto codec = makeCodec(name);
    ASSERT_TRUE(codec);
    EXPECT_EQ(codec->GetName(), name);
    EXPECT_EQ(codec->GetDomain(), "Tarvell.Compression");
    // No destination is always error 1; no source with a size has its own code.
    uint8_t byte = 0;
    unsigned long long size = 100;
    EXPECT_EQ(codec->Compress(&byte, 1, nullptr, size), 1u);
    size = 100;
    EXPECT_EQ(codec->Decompress(&byte, 1, nullptr, size), 1u);
    EXPECT_EQ(codec->GetErrorText(1), "No destination memory defined.");
    uint8_t out[16];
    size = sizeof out;
    EXPECT_EQ(codec->Compress(nullptr, 8, out, size), I_Compression::ErrorNoSource);
    EXPECT_EQ(codec->GetErrorText(I_Compression::ErrorNoSource), "No source memory defined.");
    EXPECT_EQ(codec->GetErrorText(I_Compression::ErrorDestinationTooSmall), "Destination memory too small.");
    EXPECT_EQ(codec->GetErrorText(0), "No error");
  }
}

TEST(Compressors, WrappersBehaveLikeTheLibraries)
{
  const Bytes frame = bytesOf(cameraFrame(256, 64, 11));
  RTE::C_LZ4 lz4;
  EXPECT_EQ(lz4.GetMaxCompressedSize(0x7E000000), static_cast<unsigned long long>(LZ4_compressBound(0x7E000000)));
  EXPECT_EQ(lz4.GetMaxCompressedSize(0x7E000001), 0u);
  Bytes direct(static_cast<std::size_t>(LZ4_compressBound(static_cast<int>(frame.size()))));
  direct.resize(static_cast<std::size_t>(
      LZ4_compress_default(reinterpret_cast<const char*>(frame.data()), reinterpret_cast<char*>(direct.data()),
                           static_cast<int>(frame.size()), static_cast<int>(direct.size()))));
  EXPECT_EQ(compressed(lz4, frame).data, direct);
  // Too small to compress into: nothing written, still no error.
  const Outcome tight = run(lz4, true, frame, 10);
  EXPECT_EQ(tight.code, 0u);
  EXPECT_TRUE(tight.data.empty());
  // A cut stream fails with LZ4's result: minus the bytes read, minus one.
  const Outcome cut = run(lz4, false, Bytes(direct.begin(), direct.begin() + 100), frame.size());
  EXPECT_GT(cut.code, 0x80000000u);
  EXPECT_EQ(lz4.GetErrorText(cut.code),
            QString("LZ4 decompression failed after reading %1 bytes.").arg(-static_cast<int32_t>(cut.code)));
  EXPECT_EQ(lz4.GetErrorText(0xFFFFFFFF), "Empty input or output buffer.");
  EXPECT_EQ(run(lz4, false, direct, frame.size() - 1).code >= 0x80000000u, true);

  RTE::C_Zlib zlib;
  EXPECT_EQ(zlib.GetMaxCompressedSize(1000), compressBound(1000));
  EXPECT_EQ(zlib.GetMaxCompressedSize(0x100000000ULL), 0u);
  Bytes deflated(compressBound(frame.size()));
  uLongf length = deflated.size();
  ASSERT_EQ(compress(deflated.data(), &length, frame.data(), frame.size()), Z_OK);
  deflated.resize(length);
  EXPECT_EQ(compressed(zlib, frame).data, deflated);
  EXPECT_EQ(run(zlib, true, frame, 20).code, static_cast<uint32_t>(Z_BUF_ERROR));
  EXPECT_EQ(run(zlib, false, deflated, frame.size() - 1).code, static_cast<uint32_t>(Z_BUF_ERROR));
  EXPECT_EQ(run(zlib, false, Bytes(deflated.begin(), deflated.end() - 10), frame.size()).code,
            static_cast<uint32_t>(Z_DATA_ERROR));
  const char* const texts[] = {"Zlib: Z_ERRNO",     "Zlib: Z_STREAM_ERROR", "Zlib: Z_DATA_ERROR",
                               "Zlib: Z_MEM_ERROR", "Zlib: Z_BUF_ERROR",    "Zlib: Z_VERSION_ERROR"};
  for (int code = -1; code >= -6; --code)
    EXPECT_EQ(zlib.GetErrorText(static_cast<uint32_t>(code)), texts[-code - 1]);
  EXPECT_EQ(zlib.GetErrorText(2), "No error");
}

TEST(Compressors, RoundTripEdgeImages)
{
  std::vector<std::pair<std::string, std::vector<uint16_t>>> images{
      {"empty", {}},
      {"one word", {0x1234}},
      {"odd count", noise(101, 0, 0xFFFF, 1)},
      {"all 0x0000", std::vector<uint16_t>(300, 0)},
      {"all 0xFFFF", std::vector<uint16_t>(300, 0xFFFF)},
      {"noise", noise(4099, 0, 0xFFFF, 2)},
      {"camera", cameraFrame(120, 33, 3)},
  };
  std::vector<uint16_t> extremes(257);
  for (std::size_t i = 0; i < extremes.size(); ++i)
    extremes[i] = i % 2 ? 0xFFFF : 0;
  images.emplace_back("alternating extremes", extremes);
  for (std::size_t literalsInARow : {255u, 256u})
  {
    std::vector<uint16_t> words = extremes;
    words.resize(literalsInARow);
    words.insert(words.end(), {100, 101, 102});
    images.emplace_back(std::to_string(literalsInARow) + " literals", words);
  }

  for (const std::string& name : allNames)
    for (const auto& [title, words] : images)
      for (std::size_t columns : {words.size(), std::size_t(1)})
      {
        SCOPED_TRACE(name + ", " + title + ", " + std::to_string(columns) + " columns");
        const auto codec = makeCodec(name);
        const std::size_t rows = columns == 0 ? 0 : words.size() / columns;
        setUp(*codec, columns, rows);
        const Bytes source = bytesOf(words);
        const Outcome packed = compressed(*codec, source);
        if (name == "IMX" && words.empty())
        {
          EXPECT_EQ(packed.code, 3u); // zero columns or rows
          continue;
        }
        ASSERT_EQ(packed.code, 0u) << codec->GetErrorText(packed.code).toStdString();
        const Outcome unpacked = run(*codec, false, packed.data, source.size());
        ASSERT_EQ(unpacked.code, 0u) << codec->GetErrorText(unpacked.code).toStdString();
        std::vector<uint16_t> expected = words;
        if (name == "12bit")
          for (uint16_t& word : expected)
            word &= 0x0FFF;
        EXPECT_EQ(wordsOf(unpacked.data), expected);
        if (!words.empty())
        {
          EXPECT_NE(run(*codec, false, packed.data, source.size() - 1).code, 0u);
        }
      }
}

TEST(Compressors, BlocksTooLargeForACodecAreRefusedByTheHelper)
{
  RTE::C_LZ4 lz4;
  EXPECT_NO_THROW(RTE::RequireCompressibleBlock(3, lz4, 0x7E000000));
  try
  {
    RTE::RequireCompressibleBlock(3, lz4, 0x7E000001);
    FAIL() << "no exception";
  }
  catch (const RTE::DataSizeTooLargeForCompression& e)
  {
    EXPECT_EQ(e.message(), "Compression type 3 (LZ4) can't handle a data block of 2113929217 byte.");
  }
  RTE::C_Zlib zlib;
  EXPECT_THROW(RTE::RequireCompressibleBlock(5, zlib, 0x100000000ULL), RTE::DataSizeTooLargeForCompression);
  EXPECT_NO_THROW(RTE::RequireCompressibleBlock(5, zlib, 0));
}
