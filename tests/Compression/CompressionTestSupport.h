// Shared by the compressor tests: codecs from the factory, word buffers, and calls that
// give the codec exactly the capacity asked for (so AddressSanitizer sees any overrun).
#pragma once

#include <Core/Common/Compression/I_Compression.h>
#include <Core/Common/Plugins/C_PluginFactory.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;

inline std::shared_ptr<RTE::I_Compression> makeCodec(const std::string& name)
{
  auto plugin = RTE::C_PluginFactory::GetInstance().CreatePluginObject("Tarvell.Compression", name);
  auto codec = std::dynamic_pointer_cast<RTE::I_Compression>(plugin);
  EXPECT_TRUE(codec) << name;
  return codec;
}

inline Bytes bytesOf(const std::vector<uint16_t>& words)
{
  Bytes bytes;
  for (uint16_t word : words)
  {
    bytes.push_back(static_cast<uint8_t>(word));
    bytes.push_back(static_cast<uint8_t>(word >> 8));
  }
  return bytes;
}

inline std::vector<uint16_t> wordsOf(const Bytes& bytes)
{
  std::vector<uint16_t> words;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
    words.push_back(static_cast<uint16_t>(bytes[i] | (bytes[i + 1] << 8)));
  return words;
}

struct Outcome
{
  uint32_t code = 0;
  Bytes data; // the bytes the codec reported as written
};

// Runs Compress (or Decompress) into a heap block of exactly capacity bytes.
inline Outcome run(RTE::I_Compression& codec, bool compress, const Bytes& source, std::size_t capacity)
{
  std::unique_ptr<uint8_t[]> destination(new uint8_t[capacity == 0 ? 1 : capacity]);
  std::unique_ptr<uint8_t[]> input(new uint8_t[source.empty() ? 1 : source.size()]);
  std::copy(source.begin(), source.end(), input.get());
  unsigned long long size = capacity;
  Outcome outcome;
  outcome.code = compress ? codec.Compress(input.get(), source.size(), destination.get(), size)
                          : codec.Decompress(input.get(), source.size(), destination.get(), size);
  EXPECT_LE(size, capacity);
  outcome.data.assign(destination.get(), destination.get() + std::min<unsigned long long>(size, capacity));
  return outcome;
}

inline Outcome compressed(RTE::I_Compression& codec, const Bytes& source)
{
  return run(codec, true, source, codec.GetMaxCompressedSize(source.size()));
}

inline std::vector<uint16_t> noise(std::size_t count, uint16_t low, uint16_t high, unsigned seed)
{
  std::mt19937 random(seed);
  std::uniform_int_distribution<unsigned> value(low, high);
  std::vector<uint16_t> words(count);
  for (uint16_t& word : words)
    word = static_cast<uint16_t>(value(random));
  return words;
}

// A small camera-like frame: smooth background, mild noise, a few bright spots.
inline std::vector<uint16_t> cameraFrame(std::size_t columns, std::size_t rows, unsigned seed)
{
  std::mt19937 random(seed);
  std::normal_distribution<double> shot(0.0, 3.0);
  std::vector<uint16_t> words(columns * rows);
  for (std::size_t r = 0; r < rows; ++r)
    for (std::size_t c = 0; c < columns; ++c)
    {
      double value = 400.0 + 2.0 * static_cast<double>(r) + static_cast<double>(c) + shot(random);
      if ((r / 5 + c / 7) % 11 == 0)
        value += 3000.0;
      words[r * columns + c] = static_cast<uint16_t>(value);
    }
  return words;
}
