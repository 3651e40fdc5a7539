#include "CompressionTestSupport.h"

#include <Core/Common/Compression/C_FixedBitsOfWord.h>
#include <Core/Common/Compression/PackKernels_p.h>

namespace
{

using RTE::I_Compression;

QVariantMap parameters(int bits, int start, bool wrapping, qlonglong columns = 0, qlonglong rows = 1)
{
  return {
      {"FixedBits", bits}, {"FixedStart", start}, {"FixedWrapping", wrapping}, {"Columns", columns}, {"Rows", rows}};
}

uint16_t limited(uint16_t word, int start, int bits, bool wrapping)
{
  const unsigned value = static_cast<unsigned>(word) >> start;
  const unsigned top = (1u << bits) - 1;
  return static_cast<uint16_t>(wrapping ? value & top : std::min(value, top));
}

// 12-bit groups written out from the format's three output words.
Bytes reference12(const std::vector<uint16_t>& words, int start, bool wrapping)
{
  Bytes out;
  for (std::size_t i = 0; i + 4 <= words.size(); i += 4)
  {
    const unsigned a = limited(words[i], start, 12, wrapping), b = limited(words[i + 1], start, 12, wrapping);
    const unsigned c = limited(words[i + 2], start, 12, wrapping), d = limited(words[i + 3], start, 12, wrapping);
    for (unsigned w :
         {(a & 0xFFF) + (b & 0xF) * 4096, ((b / 16) & 0xFF) + (c & 0xFF) * 256, (d & 0xFFF) * 16 + ((c / 256) & 0xF)})
    {
      out.push_back(static_cast<uint8_t>(w));
      out.push_back(static_cast<uint8_t>(w >> 8));
    }
  }
  return out;
}

} // namespace

TEST(C_FixedBitsOfWord, ClampsOrWrapsTheDocumentedPair)
{
  RTE::C_FixedBitsOfWord codec;
  codec.SetParameters(parameters(8, 4, false));
  Outcome out = compressed(codec, bytesOf({0x0230, 0x4560}));
  ASSERT_EQ(out.code, 0u);
  EXPECT_EQ(wordsOf(out.data), std::vector<uint16_t>{0xFF23});

  codec.SetParameters({{"FixedWrapping", true}});
  out = compressed(codec, bytesOf({0x0230, 0x4560}));
  EXPECT_EQ(wordsOf(out.data), std::vector<uint16_t>{0x5623});

  // An odd last word is masked even when clamping is chosen.
  codec.SetParameters(parameters(8, 0, false));
  out = compressed(codec, bytesOf({0x0012, 0x0345, 0x0678}));
  EXPECT_EQ(out.data, (Bytes{0x12, 0xFF, 0x78, 0x00}));

  // 12 bits: 0x1234 clamps to 0xFFF or wraps to 0x234.
  codec.SetParameters(parameters(12, 0, false));
  out = compressed(codec, bytesOf({0x1234, 0x0ABC, 0x0DEF, 0x0123}));
  EXPECT_EQ(wordsOf(out.data), (std::vector<uint16_t>{0xCFFF, 0xEFAB, 0x123D}));
  codec.SetParameters({{"FixedWrapping", true}});
  out = compressed(codec, bytesOf({0x1234, 0x0ABC, 0x0DEF, 0x0123}));
  EXPECT_EQ(wordsOf(out.data), (std::vector<uint16_t>{0xC234, 0xEFAB, 0x123D}));
}

TEST(C_FixedBitsOfWord, LargestSizes)
{
  RTE::C_FixedBitsOfWord codec;
  const struct
  {
    int bits;
    qlonglong columns, rows;
    unsigned long long n, expected;
  } cases[] = {
      {8, 5, 3, 0, 18}, {12, 5, 3, 0, 36}, {16, 5, 3, 0, 30},  {8, 0, 1, 10, 6},    {8, 0, 1, 8, 4},
      {12, 0, 1, 8, 6}, {12, 0, 1, 10, 9}, {16, 0, 1, 10, 10}, {12, 5, 0, 100, 75}, // Rows below 1: sized from n
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(testing::Message() << c.bits << " bits, " << c.columns << " x " << c.rows << ", n " << c.n);
    codec.SetParameters(parameters(c.bits, 0, false, c.columns, c.rows));
    EXPECT_EQ(codec.GetMaxCompressedSize(c.n), c.expected);
  }
}

TEST(C_FixedBitsOfWord, RoundTripsRowsWithEveryTail)
{
  for (bool portable : {true, false})
    for (int bits : {8, 12, 16})
      for (qlonglong columns : {1, 2, 3, 4, 5, 6, 7, 33, 70})
        for (int start : {0, 3})
        {
          SCOPED_TRACE(testing::Message() << bits << " bits, " << columns << " columns, start " << start
                                          << (portable ? " portable" : " vector"));
          RTE::PackKernels::setPortableOnly(portable);
          RTE::C_FixedBitsOfWord codec;
          const qlonglong rows = 3;
          codec.SetParameters(parameters(bits, start, false, columns, rows));
          // Values that fit: they come back exactly.
          std::vector<uint16_t> words = noise(static_cast<std::size_t>(columns * rows), 0,
                                              static_cast<uint16_t>((1u << bits) - 1), static_cast<unsigned>(columns));
          for (uint16_t& word : words)
            word = static_cast<uint16_t>(word << start);
          const Outcome packed = compressed(codec, bytesOf(words));
          ASSERT_EQ(packed.code, 0u);
          EXPECT_LE(packed.data.size(), codec.GetMaxCompressedSize(words.size() * 2));
          const Outcome unpacked = run(codec, false, packed.data, words.size() * 2);
          ASSERT_EQ(unpacked.code, 0u);
          EXPECT_EQ(wordsOf(unpacked.data), words);

          // Without Columns the whole block is one row, sized from the source alone.
          codec.SetParameters({{"Columns", 0}, {"Rows", 1}});
          const Outcome single = compressed(codec, bytesOf(words));
          ASSERT_EQ(single.code, 0u);
          EXPECT_EQ(wordsOf(run(codec, false, single.data, words.size() * 2).data), words);
        }
  RTE::PackKernels::setPortableOnly(false);
}

TEST(C_FixedBitsOfWord, VectorLoopsMatchTheFormat)
{
  const std::vector<uint16_t> words = noise(4000, 0, 0xFFFF, 7);
  for (bool wrapping : {false, true})
    for (int start : {0, 1, 4, 15})
    {
      SCOPED_TRACE(testing::Message() << "start " << start << (wrapping ? " wrapping" : " clamping"));
      RTE::C_FixedBitsOfWord codec;
      codec.SetParameters(parameters(12, start, wrapping));
      EXPECT_EQ(compressed(codec, bytesOf(words)).data, reference12(words, start, wrapping));

      codec.SetParameters(parameters(8, start, wrapping));
      Bytes expected;
      for (uint16_t word : words)
        expected.push_back(static_cast<uint8_t>(limited(word, start, 8, wrapping)));
      EXPECT_EQ(compressed(codec, bytesOf(words)).data, expected);
    }
}

TEST(C_FixedBitsOfWord, OneRowOfOddLengthAndBadSizes)
{
  RTE::C_FixedBitsOfWord codec;
  // 8 bits, 3 words: 4 bytes, like 4 words; the capacity tells which.
  codec.SetParameters(parameters(8, 0, false));
  const Bytes packed = compressed(codec, bytesOf({1, 2, 3})).data;
  ASSERT_EQ(packed.size(), 4u);
  EXPECT_EQ(wordsOf(run(codec, false, packed, 6).data), (std::vector<uint16_t>{1, 2, 3}));
  EXPECT_EQ(wordsOf(run(codec, false, packed, 8).data), (std::vector<uint16_t>{1, 2, 3, 0}));
  EXPECT_EQ(run(codec, false, packed, 4).code, I_Compression::ErrorDestinationTooSmall);

  // A 12-bit row never packs to 1 or 4 bytes modulo 6.
  codec.SetParameters(parameters(12, 0, false));
  EXPECT_EQ(run(codec, false, Bytes(7, 0), 100).code, I_Compression::ErrorCorruptData);
  EXPECT_EQ(run(codec, false, Bytes(10, 0), 100).code, I_Compression::ErrorCorruptData);
  EXPECT_EQ(run(codec, true, Bytes(5, 0), 100).code, I_Compression::ErrorOddSourceSize);

  // A block of Columns x Rows needs that many words in, and its packed size out.
  codec.SetParameters(parameters(12, 0, false, 4, 2));
  EXPECT_EQ(run(codec, true, Bytes(14, 0), 100).code, I_Compression::ErrorSourceTooShort);
  EXPECT_EQ(run(codec, true, Bytes(16, 0), 11).code, I_Compression::ErrorDestinationTooSmall);
  EXPECT_EQ(run(codec, true, Bytes(16, 0), 12).code, 0u);
  EXPECT_EQ(run(codec, false, Bytes(11, 0), 100).code, I_Compression::ErrorSourceTooShort);
  EXPECT_EQ(run(codec, false, Bytes(12, 0), 15).code, I_Compression::ErrorDestinationTooSmall);

  // Rows below 1: nothing is written, and that is no error.
  codec.SetParameters({{"Rows", 0}});
  const Outcome none = run(codec, true, Bytes(16, 0), 100);
  EXPECT_EQ(none.code, 0u);
  EXPECT_TRUE(none.data.empty());

  for (const QVariantMap& bad :
       {QVariantMap{{"FixedBits", 10}, {"Rows", 1}}, QVariantMap{{"FixedBits", 8}, {"FixedStart", 16}}})
  {
    codec.SetParameters(bad);
    EXPECT_EQ(run(codec, true, Bytes(16, 0), 100).code, I_Compression::ErrorInvalidParameter);
    EXPECT_EQ(run(codec, false, Bytes(16, 0), 100).code, I_Compression::ErrorInvalidParameter);
  }
  EXPECT_EQ(codec.GetErrorText(I_Compression::ErrorInvalidParameter), "Invalid compression parameter.");
  EXPECT_EQ(codec.GetErrorText(2), "No error");
}

TEST(C_FixedBitsOfWord, ParametersReadBack)
{
  RTE::C_FixedBitsOfWord codec;
  codec.SetParameters({{"FixedBits", 8},
                       {"FixedStart", "4"},
                       {"FixedWrapping", true},
                       {"Columns", 640},
                       {"Rows", 480},
                       {"Unknown", 1}});
  codec.SetParameters({{"Columns", -5}}); // not a count: ignored
  const QVariantMap read = codec.GetParameters();
  EXPECT_EQ(read.value("FixedBits").toInt(), 8);
  EXPECT_EQ(read.value("FixedStart").toInt(), 4);
  EXPECT_TRUE(read.value("FixedWrapping").toBool());
  EXPECT_EQ(read.value("Rows").toInt(), 480);
  EXPECT_EQ(codec.GetParameters().value("Columns").toInt(), 640);
  EXPECT_FALSE(read.contains("Unknown"));
}
