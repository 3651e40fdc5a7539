#include "CompressionTestSupport.h"

#include <Core/Common/Compression/C_IMX.h>
#include <Core/Common/Compression/ImxCoder_p.h>
#include <Core/Common/Compression/PackKernels_p.h>

#include <algorithm>
#include <thread>

namespace
{

using RTE::I_Compression;

Bytes imx(const std::vector<uint16_t>& words, qlonglong columns, qlonglong rows = 0, bool parallel = false)
{
  RTE::C_IMX codec;
  codec.SetParameters({{"Columns", columns}, {"Rows", rows}, {"Parallel", parallel}});
  const Outcome out = compressed(codec, bytesOf(words));
  EXPECT_EQ(out.code, 0u);
  return out.data;
}

std::vector<uint16_t> unimx(const Bytes& stream, qlonglong columns, qlonglong rows, uint32_t expectedCode = 0)
{
  RTE::C_IMX codec;
  codec.SetParameters({{"Columns", columns}, {"Rows", rows}});
  const Outcome out = run(codec, false, stream, static_cast<std::size_t>(columns * std::max<qlonglong>(rows, 1) * 2));
  EXPECT_EQ(out.code, expectedCode);
  return wordsOf(out.data);
}

// Words alternating between 0x8000 and 0: every delta needs a literal.
std::vector<uint16_t> literals(std::size_t count)
{
  std::vector<uint16_t> words(count);
  for (std::size_t i = 0; i < count; ++i)
    words[i] = i % 2 == 0 ? 0x8000 : 0x0000;
  return words;
}

// The encoding rules written out plainly: small-delta runs and pending literals are
// kept as lists and turned into tokens when they end.
} // namespace
Bytes referenceStream(const std::vector<uint16_t>& words, std::size_t columns)
{
  Bytes out;
  std::vector<uint16_t> literalsPending;
  std::vector<int> run;
  const auto putWord = [&](uint16_t w) { out.insert(out.end(), {uint8_t(w & 0xFF), uint8_t(w >> 8)}); };
  const auto flushLiterals = [&](bool fold)
  {
    if (fold && literalsPending.size() >= 3)
    {
      out.insert(out.end(), {0x7F, uint8_t(literalsPending.size())});
      for (uint16_t w : literalsPending)
        putWord(w);
    }
    else
    {
      for (uint16_t w : literalsPending)
      {
        out.push_back(0x80);
        putWord(w);
      }
    }
    literalsPending.clear();
  };
  const auto closeRun = [&]
  {
    std::size_t first = 0;
    if (run.size() >= 7)
    {
      if (run.size() % 2 == 0)
        out.push_back(uint8_t(run[first++]));
      out.push_back(0x81);
      for (; first + 1 < run.size(); first += 2)
        out.push_back(uint8_t((run[first] << 4) | (run[first + 1] & 0xF)));
      out.push_back(uint8_t((run[first] << 4) | 8));
    }
    else
    {
      for (int d : run)
        out.push_back(uint8_t(d));
    }
    run.clear();
  };
  int previous = 0;
  for (std::size_t i = 0; i < words.size(); ++i)
  {
    const int d = int(words[i]) - previous;
    previous = words[i];
    const bool last = (i + 1) % columns == 0;
    if (d >= -7 && d <= 7 && !last)
    {
      flushLiterals(true);
      run.push_back(d);
      continue;
    }
    closeRun();
    if (d >= -126 && d <= 126)
    {
      flushLiterals(true);
      out.push_back(uint8_t(d));
    }
    else
    {
      literalsPending.push_back(words[i]);
      if (literalsPending.size() == 255)
        flushLiterals(true);
    }
  }
  flushLiterals(false);
  return out;
}
namespace
{

// Images built from stretches of one kind of delta each (small, one-byte, literal, the
// extremes around them and 0 <-> 0xFFFF jumps), with stretch lengths around the vector
// loops' block sizes, so runs, literal streaks and row ends fall everywhere in a block.
std::vector<uint16_t> stretchedImage(std::size_t words, unsigned seed)
{
  std::mt19937 random(seed);
  const auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  std::vector<uint16_t> image;
  int value = pick(0, 65535);
  while (image.size() < words)
  {
    const int kind = pick(0, 5);
    const int length = pick(0, 3) == 0 ? pick(250, 520) : pick(1, 40);
    for (int i = 0; i < length && image.size() < words; ++i)
    {
      int delta = 0;
      switch (kind)
      {
      case 0:
        delta = pick(-7, 7);
        break; // small
      case 1:
        delta = pick(-126, 126);
        break; // one byte
      case 2:
        delta = pick(0, 1) ? pick(127, 3000) : -pick(127, 3000);
        break; // literal
      case 3:
        delta = (pick(0, 1) ? 1 : -1) * (pick(0, 1) ? pick(6, 8) : pick(125, 127));
        break;
      case 4:
        delta = pick(0, 2) == 0 ? pick(-126, 126) : pick(-7, 7);
        break;
      default:
        value = pick(0, 1) ? 0 : 65535;
        break; // wrapped jumps are literals
      }
      value += delta;
      if (value < 0 || value > 65535)
        value = std::clamp(value - 2 * delta, 0, 65535);
      image.push_back(static_cast<uint16_t>(value));
    }
  }
  return image;
}

// A low-noise image: a slow ramp with noise of the given size (mostly small deltas, so
// nibble blocks of every length), now and then a bright pixel or a literal jump.
std::vector<uint16_t> lowNoiseImage(std::size_t words, double spread, unsigned seed)
{
  std::mt19937 random(seed);
  std::normal_distribution<double> noise(0.0, spread);
  std::uniform_int_distribution<int> rare(0, 499);
  std::vector<uint16_t> image(words);
  for (std::size_t i = 0; i < words; ++i)
  {
    double value = 2000.0 + static_cast<double>(i % 1500) * 0.3 + noise(random);
    const int event = rare(random);
    if (event == 0)
      value += 90; // a one-byte delta in and out
    else if (event == 1)
      value += 20000; // literals in and out
    image[i] = static_cast<uint16_t>(std::clamp(value, 0.0, 65535.0));
  }
  return image;
}

// A noisy image: about a third of the words jump (literals, singly, in streaks of a few
// and now and then of up to 300), some to words like 0x8080 or 0x817F whose bytes look
// like tokens; the others move by up to 100.
std::vector<uint16_t> noisyImage(std::size_t words, unsigned seed)
{
  static const uint16_t tricky[] = {0x8080, 0x7F80, 0x8081, 0x817F, 0x807F, 0x0080};
  std::mt19937 random(seed);
  std::vector<uint16_t> image(words);
  unsigned value = 30000, streak = 0;
  for (uint16_t& word : image)
  {
    if (streak == 0 && random() % 3 == 0)
      streak = random() % 40 == 0 ? 1 + random() % 300 : 1 + random() % 4;
    if (streak != 0)
    {
      --streak;
      value = random() % 4 == 0 ? tricky[random() % std::size(tricky)] : random() % 65536;
    }
    else
      value = (value + random() % 201 + 65536 - 100) % 65536;
    word = static_cast<uint16_t>(value);
  }
  return image;
}

// Where the one-byte delta tokens of an intact stream start.
std::vector<std::size_t> deltaTokens(const Bytes& stream)
{
  std::vector<std::size_t> starts;
  for (std::size_t at = 0; at < stream.size();)
    if (stream[at] == 0x80)
      at += 3;
    else if (stream[at] == 0x7F)
      at += 2 + 2 * std::size_t{stream[at + 1]};
    else if (stream[at] == 0x81)
    {
      ++at;
      while ((stream[at] & 0x0F) != 0x08)
        ++at;
      ++at;
    }
    else
      starts.push_back(at++);
  return starts;
}

// The loops this machine can run, each switched on in turn: the portable ones, the AVX2
// block encoder and decoder, the AVX2 group encoder, and where the processor has it the
// AVX-512 group encoder and decoder; last the default choice.
struct Loops
{
  const char* name;
  bool portable;
  RTE::ImxCoder::VectorLoops choice;
  bool wide;
};

template <typename Check>
void forEachLoops(const Check& check)
{
  using RTE::ImxCoder::VectorLoops;
  std::vector<Loops> all{{"portable", true, VectorLoops::Chosen, false},
                         {"AVX2 blocks", false, VectorLoops::Blocks, false},
                         {"AVX2 groups", false, VectorLoops::Groups, false}};
  if (RTE::ImxCoder::hasAvx512())
    all.push_back({"AVX-512 groups", false, VectorLoops::Groups, true});
  all.push_back({"chosen", false, VectorLoops::Chosen, true});
  for (const Loops& loops : all)
  {
    SCOPED_TRACE(loops.name);
    RTE::PackKernels::setPortableOnly(loops.portable);
    RTE::ImxCoder::setVectorLoops(loops.choice);
    RTE::ImxCoder::allowAvx512(loops.wide);
    check();
    RTE::ImxCoder::allowAvx512(true);
    RTE::ImxCoder::setVectorLoops(VectorLoops::Chosen);
    RTE::PackKernels::setPortableOnly(false);
  }
}

// Encodes with every set of loops, checks each stream against the rules and that each
// decoder gives the image back.
void expectAllLoopsAgree(const std::vector<uint16_t>& image, std::size_t columns)
{
  const Bytes expected = referenceStream(image, columns);
  const auto c = static_cast<qlonglong>(columns), r = static_cast<qlonglong>(image.size() / columns);
  forEachLoops(
      [&]
      {
        EXPECT_EQ(imx(image, c, r), expected);
        EXPECT_EQ(unimx(expected, c, r), image);
      });
}

} // namespace

TEST(C_IMX, StreamsFollowTheRulesOnVariedImages)
{
  // Noise levels from flat to wild, so runs, folds and literals start and end everywhere.
  for (int spread : {0, 2, 7, 12, 60, 150, 3000})
    for (std::size_t columns : {1u, 2u, 16u, 17u, 18u, 33u, 100u, 1000u})
    {
      SCOPED_TRACE(testing::Message() << "spread " << spread << ", " << columns << " columns");
      std::mt19937 random(static_cast<unsigned>(spread * 7919 + columns));
      std::uniform_int_distribution<int> noise(-spread, spread);
      std::vector<uint16_t> image(columns * 7);
      int value = 30000;
      for (std::size_t i = 0; i < image.size(); ++i)
      {
        value = std::clamp(value + noise(random), 0, 65535);
        image[i] = static_cast<uint16_t>(i % 97 < 20 ? 500 : value); // flat stretches too
      }
      const Bytes expected = referenceStream(image, columns);
      EXPECT_EQ(imx(image, static_cast<qlonglong>(columns), 7), expected);
      RTE::ImxCoder::setParallelThreads(3);
      EXPECT_EQ(imx(image, static_cast<qlonglong>(columns), 7, true), expected);
      RTE::ImxCoder::setParallelThreads(0);
    }
}

TEST(C_IMX, VectorAndPortableLoopsWriteAndReadTheSameStreams)
{
  // Row lengths around the 16- and 32-word blocks, rows shorter than a block, one long row.
  const struct
  {
    std::size_t columns, rows;
  } shapes[] = {{1, 300}, {2, 150}, {31, 20}, {32, 20}, {33, 20}, {34, 19},  {47, 13}, {48, 13},
                {49, 13}, {64, 11}, {65, 11}, {97, 9},  {200, 7}, {1000, 3}, {4099, 1}};
  for (const auto& shape : shapes)
    for (unsigned seed = 0; seed < 6; ++seed)
    {
      SCOPED_TRACE(testing::Message() << shape.columns << " x " << shape.rows << ", seed " << seed);
      // Every third image a noisy one: literals in a third of the words, folded or not.
      const std::vector<uint16_t> image = seed % 3 == 2
                                              ? noisyImage(shape.columns * shape.rows, seed * 131 + shape.columns)
                                              : stretchedImage(shape.columns * shape.rows, seed * 131 + shape.columns);
      const Bytes expected = referenceStream(image, shape.columns);
      const auto columns = static_cast<qlonglong>(shape.columns), rows = static_cast<qlonglong>(shape.rows);
      forEachLoops(
          [&]
          {
            EXPECT_EQ(imx(image, columns, rows), expected);
            RTE::ImxCoder::setParallelThreads(2 + seed % 3);
            EXPECT_EQ(imx(image, columns, rows, true), expected);
            RTE::ImxCoder::setParallelThreads(0);
            EXPECT_EQ(unimx(expected, columns, rows), image);
            // A stream cut anywhere in its last 70 bytes ends inside the block.
            for (std::size_t cut = 1; cut <= std::min<std::size_t>(70, expected.size()); ++cut)
              unimx(Bytes(expected.begin(), expected.end() - static_cast<std::ptrdiff_t>(cut)), columns, rows,
                    I_Compression::ErrorSourceTooShort);
          });
    }
}

TEST(C_IMX, LiteralsFoldFromThreeAndSplitAt255)
{
  // Two literals before a delta stay single tokens; three fold into one run.
  EXPECT_EQ(imx({1000, 2000, 2010, 2020}, 0), (Bytes{0x80, 0xE8, 0x03, 0x80, 0xD0, 0x07, 0x0A, 0x0A}));
  EXPECT_EQ(imx({1000, 2000, 3000, 3010, 3020}, 0),
            (Bytes{0x7F, 0x03, 0xE8, 0x03, 0xD0, 0x07, 0xB8, 0x0B, 0x0A, 0x0A}));
  // Without a delta after them they stay as they are.
  EXPECT_EQ(imx({1000, 2000, 3000}, 0), (Bytes{0x80, 0xE8, 0x03, 0x80, 0xD0, 0x07, 0x80, 0xB8, 0x0B}));
  // A literal run continues across a row end: the stream does not restart per row.
  EXPECT_EQ(imx({1000, 2000, 3000, 3010}, 2, 2), (Bytes{0x7F, 0x03, 0xE8, 0x03, 0xD0, 0x07, 0xB8, 0x0B, 0x0A}));

  // 255 pending literals are written at once; the next ones count from zero.
  for (std::size_t count : {254u, 255u, 256u, 257u, 258u, 510u, 511u})
  {
    SCOPED_TRACE(count);
    std::vector<uint16_t> words = literals(count);
    words.push_back(static_cast<uint16_t>(words.back() + 1));
    const Bytes stream = imx(words, 0);
    Bytes expected;
    std::size_t i = 0;
    const auto runOf = [&](std::size_t n)
    {
      expected.push_back(0x7F);
      expected.push_back(static_cast<uint8_t>(n));
      for (std::size_t k = 0; k < n; ++k, ++i)
        expected.insert(expected.end(), {static_cast<uint8_t>(words[i]), static_cast<uint8_t>(words[i] >> 8)});
    };
    while (count - i >= 255)
      runOf(255);
    if (count - i >= 3)
      runOf(count - i);
    for (; i < count; ++i)
      expected.insert(expected.end(), {0x80, static_cast<uint8_t>(words[i]), static_cast<uint8_t>(words[i] >> 8)});
    expected.push_back(0x01);
    EXPECT_EQ(stream, expected);
    EXPECT_EQ(unimx(stream, static_cast<qlonglong>(words.size()), 1), words);
  }

  // The same after every number of deltas, so the 255th literal falls on every word of
  // a vector block; once in one long row, once in rows of 64.
  for (std::size_t offset = 0; offset < 40; ++offset)
    for (std::size_t count : {254u, 255u, 256u, 510u})
    {
      SCOPED_TRACE(testing::Message() << offset << " deltas, " << count << " literals");
      std::vector<uint16_t> words;
      for (std::size_t i = 0; i < offset; ++i)
        words.push_back(static_cast<uint16_t>(20 * i));
      const std::vector<uint16_t> streak = literals(count);
      words.insert(words.end(), streak.begin(), streak.end());
      words.resize(1024, 0x100);
      EXPECT_EQ(imx(words, 0), referenceStream(words, words.size()));
      EXPECT_EQ(imx(words, 64, 16), referenceStream(words, 64));
    }
}

TEST(C_IMX, SmallDeltaRunsBecomeNibbleBlocks)
{
  // Seven small deltas: 0x81, three pairs, the last delta with the terminator.
  EXPECT_EQ(imx({0, 1, 2, 3, 4, 5, 6, 100}, 0), (Bytes{0x81, 0x01, 0x11, 0x11, 0x18, 0x5E}));
  // Eight: the first stays a byte, the other seven are packed.
  EXPECT_EQ(imx({0, 1, 2, 3, 4, 5, 6, 7, 100}, 0), (Bytes{0x00, 0x81, 0x11, 0x11, 0x11, 0x18, 0x5D}));
  // Six are too few.
  EXPECT_EQ(imx({0, 1, 2, 3, 4, 5, 100}, 0), (Bytes{0x00, 0x01, 0x01, 0x01, 0x01, 0x01, 0x5F}));
  // Negative deltas as 4-bit two's complement; -7 and 7 are the extremes.
  EXPECT_EQ(imx({0, 7, 0, 7, 0, 7, 0, 7, 0, 100}, 0), (Bytes{0x81, 0x07, 0x97, 0x97, 0x97, 0x98, 0x64}));
  // A run closed by a literal, and the delta from 0 to 0xFFFF is no small delta.
  EXPECT_EQ(imx({0, 0, 0, 0, 0, 0, 0, 0xFFFF, 0xFFFE}, 0),
            (Bytes{0x81, 0x00, 0x00, 0x00, 0x08, 0x80, 0xFF, 0xFF, 0xFF}));

  // A run never crosses a row end: the last word of a row is no small delta.
  const std::vector<uint16_t> flat(16, 0);
  EXPECT_EQ(imx(flat, 8, 2), (Bytes{0x81, 0x00, 0x00, 0x00, 0x08, 0x00, 0x81, 0x00, 0x00, 0x00, 0x08, 0x00}));
  EXPECT_EQ(imx(flat, 1, 16), Bytes(16, 0x00));
  EXPECT_EQ(imx(flat, 0), (Bytes{0x81, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x08, 0x00}));

  for (const auto& [words, columns] :
       {std::pair{std::vector<uint16_t>{0, 1, 2, 3, 4, 5, 6, 100}, 8}, std::pair{flat, 8}, std::pair{flat, 1}})
    EXPECT_EQ(unimx(imx(words, columns), columns, static_cast<qlonglong>(words.size()) / columns), words);
}

TEST(C_IMX, ParallelStreamEqualsTheSerialOne)
{
  // Literal streaks and runs that end exactly at chunk borders, for several thread counts.
  std::vector<uint16_t> image = cameraFrame(64, 97, 3);
  const std::vector<uint16_t> streak = literals(700);
  std::copy(streak.begin(), streak.end(), image.begin() + 64 * 40 - 300);
  std::fill(image.begin() + 64 * 60, image.begin() + 64 * 62, 0);
  for (unsigned threads : {2u, 3u, 4u, 7u, 97u, 200u})
  {
    SCOPED_TRACE(threads);
    RTE::ImxCoder::setParallelThreads(threads);
    const Bytes serial = imx(image, 64, 97);
    const Bytes parallel = imx(image, 64, 97, true);
    EXPECT_EQ(parallel, serial);
    EXPECT_EQ(unimx(parallel, 64, 97), image);
  }
  RTE::ImxCoder::setParallelThreads(0);

  // ParallelAuto picks the parallel encoder from 64 rows on; the stream is the same.
  RTE::C_IMX codec;
  codec.SetParameters({{"Columns", 64}, {"Rows", 97}, {"ParallelAuto", true}});
  EXPECT_EQ(compressed(codec, bytesOf(image)).data, imx(image, 64, 97));
}

TEST(C_IMX, ParallelEncodersRunningAtOnceGiveTheSerialStreams)
{
  // Callers at the same time share the kept helper threads or start their own; rows
  // longer than a piece make one piece per row.
  std::vector<std::pair<std::vector<uint16_t>, qlonglong>> images;
  for (unsigned seed = 0; seed < 4; ++seed)
    images.emplace_back(stretchedImage(seed == 3 ? 70000 * 3 : 300 * 200, seed + 17), seed == 3 ? 70000 : 300);
  std::vector<Bytes> serial;
  for (const auto& [image, columns] : images)
    serial.push_back(imx(image, columns, static_cast<qlonglong>(image.size()) / columns));

  RTE::ImxCoder::setParallelThreads(2);
  std::vector<std::thread> callers;
  for (std::size_t i = 0; i < images.size(); ++i)
    callers.emplace_back(
        [&, i]
        {
          const auto& [image, columns] = images[i];
          for (int repeat = 0; repeat < 5; ++repeat)
            EXPECT_EQ(imx(image, columns, static_cast<qlonglong>(image.size()) / columns, true), serial[i]) << i;
        });
  for (std::thread& caller : callers)
    caller.join();
  RTE::ImxCoder::setParallelThreads(0);
}

TEST(C_IMX, ParametersSizesAndErrors)
{
  RTE::C_IMX codec;
  EXPECT_EQ(codec.GetMaxCompressedSize(10), 15u);
  EXPECT_EQ(codec.GetMaxCompressedSize(11), 16u);

  // Compress: zero columns or rows give 3; Rows 0 takes as many rows as the source holds.
  codec.SetParameters({{"Columns", 0}, {"Rows", 0}});
  EXPECT_EQ(run(codec, true, Bytes{}, 10).code, RTE::C_IMX::ErrorColumnsOrRowsMissing);
  codec.SetParameters({{"Columns", 4}, {"Rows", 0}});
  EXPECT_EQ(run(codec, true, Bytes(6, 0), 10).code, RTE::C_IMX::ErrorColumnsOrRowsMissing);
  EXPECT_EQ(run(codec, true, Bytes(18, 0), 100).data, Bytes(8, 0x00));
  codec.SetParameters({{"Columns", 4}, {"Rows", 3}});
  EXPECT_EQ(run(codec, true, Bytes(18, 0), 100).code, I_Compression::ErrorSourceTooShort);
  EXPECT_EQ(codec.GetErrorText(3), "Number of columns or number of rows missing.");

  // The capacity counts, not the largest size: 0x7F, 11, 11 words, one delta.
  std::vector<uint16_t> hardWords = literals(11);
  hardWords.push_back(0x8001);
  EXPECT_EQ(run(codec, true, bytesOf(hardWords), 24).code, I_Compression::ErrorDestinationTooSmall);
  const Outcome fits = run(codec, true, bytesOf(hardWords), 25);
  ASSERT_EQ(fits.code, 0u);
  EXPECT_EQ(fits.data.size(), 25u);
  EXPECT_EQ(codec.GetParameters().value("Size").toULongLong(), 25u);
  EXPECT_EQ(wordsOf(run(codec, false, fits.data, 24).data), hardWords);

  // Decompress: Columns needed; Rows 0 is one row; the consumed size is kept in "Size".
  codec.SetParameters({{"Columns", 0}});
  EXPECT_EQ(run(codec, false, fits.data, 100).code, RTE::C_IMX::ErrorColumnsMissing);
  EXPECT_EQ(codec.GetErrorText(2), "Number of columns missing.");
  const Bytes deltas(10, 0x01);
  codec.SetParameters({{"Columns", 4}, {"Rows", 0}});
  EXPECT_EQ(wordsOf(run(codec, false, deltas, 8).data), (std::vector<uint16_t>{1, 2, 3, 4}));
  EXPECT_EQ(codec.GetParameters().value("Size").toULongLong(), 4u);
  codec.SetParameters({{"Rows", 2}});
  EXPECT_EQ(run(codec, false, deltas, 16).data.size(), 16u);
  EXPECT_EQ(codec.GetParameters().value("Size").toULongLong(), 8u);
  EXPECT_EQ(run(codec, false, deltas, 15).code, I_Compression::ErrorDestinationTooSmall);
  EXPECT_EQ(codec.GetParameters().value("Size").toULongLong(), 0u);
  EXPECT_EQ(run(codec, false, Bytes{0x01, 0x01, 0x80}, 16).code, I_Compression::ErrorSourceTooShort);
  EXPECT_EQ(codec.GetParameters().value("Size").toULongLong(), 0u);
}

TEST(C_IMX, DamagedStreamsAreRefused)
{
  const std::vector<uint16_t> frame = cameraFrame(16, 4, 5);
  const Bytes good = imx(frame, 16, 4);
  // Every cut of the stream ends inside the block.
  for (std::size_t length = 0; length < good.size(); ++length)
  {
    SCOPED_TRACE(length);
    unimx(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)), 16, 4,
          I_Compression::ErrorSourceTooShort);
  }
  const struct
  {
    Bytes stream;
    uint32_t code;
  } cases[] = {
      {{0x7F, 0x05, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0}, I_Compression::ErrorCorruptData}, // 5 literals for 4 words
      {{0x81, 0x11}, I_Compression::ErrorSourceTooShort},                            // no terminator
      {{0x81, 0x11, 0x11, 0x11, 0x11}, I_Compression::ErrorCorruptData},             // 6 deltas
      {{0x81, 0x11, 0x18, 0x01}, 0},                                                 // 3 deltas + 1 byte
      {{0x80, 0x01}, I_Compression::ErrorSourceTooShort},
      {{0x7F}, I_Compression::ErrorSourceTooShort},
      {{0x7F, 0x00, 0x7F, 0x02, 1, 0, 2, 0, 0x01, 0x01}, 0},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(testing::PrintToString(c.stream));
    unimx(c.stream, 4, 1, c.code);
  }
  EXPECT_EQ(unimx({0x81, 0x11, 0x18, 0x01}, 4, 1), (std::vector<uint16_t>{1, 2, 3, 4}));
  EXPECT_EQ(unimx({0x82, 0x7E, 0x81, 0xF8}, 3, 1), (std::vector<uint16_t>{0xFF82, 0, 0xFFFF}));
}

TEST(C_IMX, NibbleBlocksOfEveryLengthAndPlace)
{
  // Runs of 7 to 80 small deltas after 0 to 33 one-byte deltas: every parity, every
  // place of the block in a vector block, every place of its last byte in a decoded chunk.
  for (std::size_t before = 0; before < 34; ++before)
    for (std::size_t length = 7; length <= 80; ++length)
    {
      SCOPED_TRACE(testing::Message() << before << " deltas, run of " << length);
      std::vector<uint16_t> words;
      int value = 1000;
      for (std::size_t i = 0; i < before; ++i)
        words.push_back(static_cast<uint16_t>(value += 20));
      for (std::size_t i = 0; i < length; ++i)
        words.push_back(static_cast<uint16_t>(value += static_cast<int>(i * 5 % 15) - 7));
      words.push_back(static_cast<uint16_t>(value += 50));
      while (words.size() % 64 != 0 || words.size() < 192)
        words.push_back(static_cast<uint16_t>(value += words.size() % 3 == 0 ? 30 : 1));
      expectAllLoopsAgree(words, words.size());
      expectAllLoopsAgree(words, 64);
    }
}

TEST(C_IMX, LowNoiseImagesOfManyShapes)
{
  // Noise of 1 to 4 DN makes nibble blocks most of the stream; row lengths around the
  // block sizes, odd ones, rows shorter than a block, and one long row.
  const struct
  {
    std::size_t columns, rows;
  } shapes[] = {{7, 40}, {8, 40}, {15, 30}, {31, 20}, {32, 20}, {33, 20},  {63, 9},
                {64, 9}, {65, 9}, {97, 7},  {127, 5}, {129, 5}, {1001, 3}, {4099, 1}};
  for (double spread : {1.0, 2.0, 3.0, 4.0})
    for (const auto& shape : shapes)
    {
      SCOPED_TRACE(testing::Message() << "noise " << spread << ", " << shape.columns << " x " << shape.rows);
      const std::vector<uint16_t> image =
          lowNoiseImage(shape.columns * shape.rows, spread, static_cast<unsigned>(shape.columns * 10 + spread));
      expectAllLoopsAgree(image, shape.columns);
      RTE::ImxCoder::setParallelThreads(3);
      EXPECT_EQ(imx(image, static_cast<qlonglong>(shape.columns), static_cast<qlonglong>(shape.rows), true),
                referenceStream(image, shape.columns));
      RTE::ImxCoder::setParallelThreads(0);
    }
}

TEST(C_IMX, DamagedNibbleBlocksAreRefusedByEveryDecoder)
{
  // A long block without its last byte: the source ends inside it, or it would describe
  // more words than the block holds. Long enough for the wide loops to take it.
  Bytes open{0x81};
  open.insert(open.end(), 100, 0x11);
  Bytes tooLong = open;
  tooLong.push_back(0x18);
  tooLong.insert(tooLong.end(), 80, 0x01);
  std::vector<uint16_t> words;
  for (uint16_t i = 1; i <= 201; ++i)
    words.push_back(i);
  for (uint16_t i = 0; i < 80; ++i)
    words.push_back(static_cast<uint16_t>(202 + i));
  forEachLoops(
      [&]
      {
        unimx(open, 400, 1, I_Compression::ErrorSourceTooShort);
        unimx(open, 150, 1, I_Compression::ErrorCorruptData);
        unimx(tooLong, 200, 1, I_Compression::ErrorCorruptData);
        unimx(tooLong, 300, 1, I_Compression::ErrorSourceTooShort);
        EXPECT_EQ(unimx(tooLong, 281, 1), words);
      });
}

TEST(C_IMX, DamagedStreamsReadAlikeByEveryDecoder)
{
  // Bytes of low-noise and of noisy streams overwritten at random (so 0x80, 0x7F and 0x81
  // land inside nibble blocks and literals) or cut short: every decoder must give the
  // same answer, words and consumed bytes as the portable one.
  std::mt19937 random(17);
  for (int round = 0; round < 300; ++round)
  {
    SCOPED_TRACE(testing::Message() << "round " << round);
    const std::size_t columns = 50 + random() % 700, rows = 1 + random() % 4;
    const std::vector<uint16_t> image =
        round % 2 == 0
            ? lowNoiseImage(columns * rows, 1.0 + static_cast<double>(random() % 8), static_cast<unsigned>(round))
            : noisyImage(columns * rows, static_cast<unsigned>(round));
    Bytes stream = referenceStream(image, columns);
    if (round % 3 == 1)
    {
      // A run of no words before a delta changes nothing.
      const std::vector<std::size_t> deltas = deltaTokens(stream);
      if (!deltas.empty())
        stream.insert(stream.begin() + static_cast<std::ptrdiff_t>(deltas[random() % deltas.size()]), {0x7F, 0x00});
    }
    for (unsigned k = random() % 4; k > 0; --k)
      stream[random() % stream.size()] = static_cast<uint8_t>(random() % 3 == 0 ? 0x7F + random() % 3 : random());
    if (round % 5 == 0)
      stream.resize(stream.size() - 1 - random() % std::min<std::size_t>(stream.size(), 40));
    RTE::C_IMX codec;
    codec.SetParameters({{"Columns", qulonglong(columns)}, {"Rows", qulonglong(rows)}});
    RTE::PackKernels::setPortableOnly(true);
    const Outcome expected = run(codec, false, stream, 2 * image.size());
    const qulonglong expectedSize = codec.GetParameters()["Size"].toULongLong();
    RTE::PackKernels::setPortableOnly(false);
    forEachLoops(
        [&]
        {
          const Outcome out = run(codec, false, stream, 2 * image.size());
          EXPECT_EQ(out.code, expected.code);
          EXPECT_EQ(out.data, expected.data);
          EXPECT_EQ(codec.GetParameters()["Size"].toULongLong(), expectedSize);
        });
  }
}

TEST(C_IMX, EveryDecoderConsumesTheStreamUpToItsLastByte)
{
  // Two deltas and a literal over and over, so that literals run from one 64-byte window
  // into the next; then 63 deltas and a literal whose two bytes lie past a window's end.
  // Every decoder gives the words back and counts the whole stream as read.
  for (std::size_t triples : {60u, 61u, 62u, 63u, 64u, 65u})
  {
    SCOPED_TRACE(testing::Message() << triples << " triples");
    std::vector<uint16_t> image;
    int value = 0;
    for (std::size_t i = 0; i < triples; ++i)
    {
      image.push_back(static_cast<uint16_t>(value += 20));
      image.push_back(static_cast<uint16_t>(value -= 20));
      image.push_back(static_cast<uint16_t>(value = 0x1000 + 0x101 * static_cast<int>(i % 64)));
    }
    for (int i = 0; i < 63; ++i)
      image.push_back(static_cast<uint16_t>(value += i % 2 == 0 ? 20 : -20));
    image.push_back(static_cast<uint16_t>(value + 0x4000));
    const Bytes stream = referenceStream(image, image.size());
    RTE::C_IMX codec;
    codec.SetParameters({{"Columns", qulonglong(image.size())}, {"Rows", 1}});
    forEachLoops(
        [&]
        {
          const Outcome out = run(codec, false, stream, 2 * image.size());
          EXPECT_EQ(out.code, 0u);
          EXPECT_EQ(wordsOf(out.data), image);
          EXPECT_EQ(codec.GetParameters()["Size"].toULongLong(), stream.size());
        });
  }
}
