#include "CompressionTestSupport.h"

#include <Core/Common/Compression/C_12bit.h>
#include <Core/Common/Compression/PackKernels_p.h>

namespace
{

// The format written out byte by byte, independent of the codec's loops.
Bytes reference12bit(const Bytes& s)
{
  Bytes out;
  std::size_t i = 0;
  for (; i + 4 <= s.size(); i += 4)
  {
    out.push_back(s[i]);
    out.push_back(static_cast<uint8_t>(((s[i + 1] & 0xF) << 4) | (s[i + 2] >> 4)));
    out.push_back(static_cast<uint8_t>(((s[i + 2] & 0xF) << 4) | (s[i + 3] & 0xF)));
  }
  if (i + 2 == s.size())
  {
    out.push_back(s[i]);
    out.push_back(static_cast<uint8_t>((s[i + 1] & 0xF) << 4));
  }
  return out;
}

class PortableKernels
{
public:
  explicit PortableKernels(bool portable) { RTE::PackKernels::setPortableOnly(portable); }
  ~PortableKernels() { RTE::PackKernels::setPortableOnly(false); }
};

} // namespace

TEST(C_12bit, PacksTheDocumentedExample)
{
  RTE::C_12bit codec;
  const Outcome packed = compressed(codec, bytesOf({0x0ABC, 0x0123}));
  ASSERT_EQ(packed.code, 0u);
  EXPECT_EQ(packed.data, (Bytes{0xBC, 0xA2, 0x31}));

  const Outcome unpacked = run(codec, false, packed.data, 4);
  ASSERT_EQ(unpacked.code, 0u);
  EXPECT_EQ(wordsOf(unpacked.data), (std::vector<uint16_t>{0x0ABC, 0x0123}));

  // The top nibble is lost, also for a single trailing word.
  const Outcome top = compressed(codec, bytesOf({0xFABC, 0xF123, 0xFABC}));
  ASSERT_EQ(top.code, 0u);
  EXPECT_EQ(top.data, (Bytes{0xBC, 0xA2, 0x31, 0xBC, 0xA0}));
  EXPECT_EQ(wordsOf(run(codec, false, top.data, 6).data), (std::vector<uint16_t>{0x0ABC, 0x0123, 0x0ABC}));
}

TEST(C_12bit, SizesAndErrors)
{
  RTE::C_12bit codec;
  EXPECT_EQ(codec.GetMaxCompressedSize(0), 4u);
  EXPECT_EQ(codec.GetMaxCompressedSize(8), 10u);
  EXPECT_EQ(codec.GetMaxCompressedSize(10), 11u);
  EXPECT_EQ(codec.GetMaxCompressedSize(~0ULL), 3 * (~0ULL / 4) + 2 + 4);

  for (std::size_t size : {1u, 3u, 5u, 7u})
  {
    SCOPED_TRACE(size);
    const Outcome odd = run(codec, true, Bytes(size, 0x11), 16);
    EXPECT_EQ(odd.code, 2u);
    EXPECT_TRUE(odd.data.empty());
  }
  EXPECT_EQ(codec.GetErrorText(2), "Source size must be multiple of 2 (for words).");

  // A packed size of 1 modulo 3 gives the code whose text is "No error".
  for (std::size_t size : {1u, 4u, 7u})
  {
    SCOPED_TRACE(size);
    const Outcome bad = run(codec, false, Bytes(size, 0x11), 16);
    EXPECT_EQ(bad.code, 0xFFFFFFFDu);
    EXPECT_TRUE(bad.data.empty());
  }
  EXPECT_EQ(codec.GetErrorText(0xFFFFFFFD), "No error");
  EXPECT_EQ(codec.GetErrorText(3), "No error");

  // Exactly the size needed works, one byte less is refused in both directions.
  const Bytes words = bytesOf(noise(7, 0, 0xFFFF, 1));
  EXPECT_EQ(run(codec, true, words, 11).code, 0u);
  EXPECT_EQ(run(codec, true, words, 10).code, RTE::I_Compression::ErrorDestinationTooSmall);
  EXPECT_EQ(run(codec, false, Bytes(11, 0), 14).code, 0u);
  EXPECT_EQ(run(codec, false, Bytes(11, 0), 13).code, RTE::I_Compression::ErrorDestinationTooSmall);
}

TEST(C_12bit, VectorAndPortableLoopsAgreeWithTheFormat)
{
  // Lengths around the vector block sizes, so every loop ends in each possible tail.
  for (bool portable : {true, false})
    for (std::size_t words : {0u, 1u, 2u, 15u, 16u, 17u, 19u, 20u, 21u, 22u, 23u, 33u, 40u, 41u, 1001u, 4096u})
    {
      SCOPED_TRACE(testing::Message() << "words " << words << (portable ? " portable" : " vector"));
      PortableKernels kernels(portable);
      RTE::C_12bit codec;
      const Bytes source = bytesOf(noise(words, 0, 0xFFFF, static_cast<unsigned>(words)));
      const Outcome packed = compressed(codec, source);
      ASSERT_EQ(packed.code, 0u);
      EXPECT_EQ(packed.data, reference12bit(source));
      const Outcome unpacked = run(codec, false, packed.data, source.size());
      ASSERT_EQ(unpacked.code, 0u);
      std::vector<uint16_t> expected = wordsOf(source);
      for (uint16_t& word : expected)
        word &= 0x0FFF;
      EXPECT_EQ(wordsOf(unpacked.data), expected);
    }
}
