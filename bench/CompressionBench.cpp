// Throughput and ratio of every compressor on generated camera-like 16-bit images, with
// memcpy, LZ4, zlib and zstd level 1 on the same buffers as references in the same run.
//
//   build/bench/CompressionBench --benchmark_min_time=0.5
//
// Throughput is counted in raw (uncompressed) bytes for both directions; "ratio" is raw
// size over compressed size. IMX runs with the loops it picks itself (IMX), without the
// AVX-512 ones (IMX-avx2), with one encoder forced (IMX-blocks, IMX-groups and, without
// AVX-512, IMX-groups-avx2; forcing also picks the decoder that goes with it) and with
// the portable loops only (IMX-portable). The LZ4-vs-direct and Zlib-vs-direct rows time the wrappers
// and the libraries alternately on the same buffers (counter wrapper_vs_direct).
#include <Core/Common/Compression/C_12bit.h>
#include <Core/Common/Compression/C_FixedBitsOfWord.h>
#include <Core/Common/Compression/C_IMX.h>
#include <Core/Common/Compression/C_LZ4.h>
#include <Core/Common/Compression/C_Zlib.h>
#include <Core/Common/Compression/ImxCoder_p.h>
#include <Core/Common/Compression/PackKernels_p.h>

#include <benchmark/benchmark.h>
#include <lz4.h>
#include <zlib.h>
#ifdef CORECOMMON_BENCH_ZSTD
#include <zstd.h>
#endif

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{

constexpr std::size_t columns = 2048;
constexpr std::size_t rows = 2048;

struct Image
{
  std::string name;
  std::vector<uint8_t> bytes;
};

// A frame like a scientific camera's: vignetted background, a slow gradient, Poisson shot
// noise (as a Gaussian) plus read noise, round bright particles and a few saturated ones.
Image makeImage(const std::string& name, double background, double gain, double readNoise, double peak, unsigned top,
                unsigned seed)
{
  std::mt19937 random(seed);
  std::normal_distribution<double> unit(0.0, 1.0);
  std::uniform_real_distribution<double> where(0.0, 1.0);
  std::vector<double> signal(columns * rows);
  for (std::size_t r = 0; r < rows; ++r)
    for (std::size_t c = 0; c < columns; ++c)
    {
      const double x = (static_cast<double>(c) / columns - 0.5) * 2, y = (static_cast<double>(r) / rows - 0.5) * 2;
      signal[r * columns + c] = background * (1.0 - 0.25 * (x * x + y * y)) * (1.0 + 0.1 * y);
    }
  for (int spot = 0; spot < 3000; ++spot)
  {
    const double cx = where(random) * columns, cy = where(random) * rows;
    const double radius = 1.5 + 3.0 * where(random), height = peak * where(random) * where(random);
    const int reach = static_cast<int>(radius * 3);
    for (int dy = -reach; dy <= reach; ++dy)
      for (int dx = -reach; dx <= reach; ++dx)
      {
        const auto px = static_cast<long>(cx) + dx, py = static_cast<long>(cy) + dy;
        if (px < 0 || py < 0 || px >= static_cast<long>(columns) || py >= static_cast<long>(rows))
          continue;
        signal[static_cast<std::size_t>(py) * columns + static_cast<std::size_t>(px)] +=
            height * std::exp(-(dx * dx + dy * dy) / (2 * radius * radius));
      }
  }
  Image image{name, std::vector<uint8_t>(columns * rows * 2)};
  for (std::size_t i = 0; i < signal.size(); ++i)
  {
    const double noisy = signal[i] + unit(random) * std::sqrt(signal[i] * gain + readNoise * readNoise);
    const auto value = static_cast<unsigned>(std::clamp(std::lround(noisy), 0L, static_cast<long>(top)));
    image.bytes[2 * i] = static_cast<uint8_t>(value);
    image.bytes[2 * i + 1] = static_cast<uint8_t>(value >> 8);
  }
  return image;
}

// A flat field: a smooth two-dimensional gradient (about 1500 DN over the frame) with
// Gaussian noise of the given size, as a cooled sensor gives it.
Image makeFlatField(const std::string& name, double level, double noise, unsigned seed)
{
  std::mt19937 random(seed);
  std::normal_distribution<double> unit(0.0, 1.0);
  Image image{name, std::vector<uint8_t>(columns * rows * 2)};
  for (std::size_t r = 0; r < rows; ++r)
    for (std::size_t c = 0; c < columns; ++c)
    {
      const double x = static_cast<double>(c) / columns, y = static_cast<double>(r) / rows;
      const double smooth = level + 900 * x + 600 * y * y - 300 * x * y;
      const auto value = static_cast<unsigned>(std::clamp(std::lround(smooth + noise * unit(random)), 0L, 65535L));
      image.bytes[2 * (r * columns + c)] = static_cast<uint8_t>(value);
      image.bytes[2 * (r * columns + c) + 1] = static_cast<uint8_t>(value >> 8);
    }
  return image;
}

// Every image has 2048 rows of its own: a stream that repeats a few hundred rows decodes
// in up to 40% less time, as the branch predictor learns it, and would flatter the decoders.
const std::vector<Image>& images()
{
  static const std::vector<Image> all{
      makeImage("12bit-dim", 100, 0.5, 1.5, 3000, 4095, 1),     // low light, 12-bit sensor
      makeImage("12bit-bright", 1500, 1.0, 2.5, 2500, 4095, 2), // well lit, some saturation
      makeImage("16bit", 4000, 2.0, 6.0, 60000, 65535, 3),      // 16-bit range
      // Low noise: nearly every delta is small, so nibble blocks make most of the stream.
      makeImage("12bit-lownoise", 400, 0.0, 2.0, 300, 4095, 4), // about 2 DN, faint spots
      makeFlatField("16bit-flat", 30000, 3.0, 5),               // about 3 DN over a gradient
  };
  return all;
}

void reportRatio(benchmark::State& state, std::size_t raw, std::size_t packed)
{
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * raw));
  state.counters["ratio"] = packed == 0 ? 0.0 : static_cast<double>(raw) / static_cast<double>(packed);
}

void memcpyBench(benchmark::State& state, const Image& image)
{
  std::vector<uint8_t> out(image.bytes.size());
  for (auto _ : state)
  {
    std::memcpy(out.data(), image.bytes.data(), image.bytes.size());
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  reportRatio(state, image.bytes.size(), image.bytes.size());
}

using MakeCodec = std::function<std::unique_ptr<RTE::I_Compression>()>;

// The image compressed once, for decompression and for the ratio; false (and the
// benchmark skipped) when the codec fails.
bool packOnce(benchmark::State& state, RTE::I_Compression& codec, const Image& image, std::vector<uint8_t>& packed,
              unsigned long long& packedSize)
{
  packed.resize(codec.GetMaxCompressedSize(image.bytes.size()));
  packedSize = packed.size();
  if (codec.Compress(image.bytes.data(), image.bytes.size(), packed.data(), packedSize) == 0)
    return true;
  state.SkipWithError("compress failed");
  return false;
}

void codecBench(benchmark::State& state, const Image& image, const MakeCodec& make, bool compress)
{
  auto codec = make();
  std::vector<uint8_t> packed;
  unsigned long long packedSize = 0;
  if (!packOnce(state, *codec, image, packed, packedSize))
    return;
  std::vector<uint8_t> raw(image.bytes.size());
  for (auto _ : state)
  {
    unsigned long long size = compress ? packed.size() : raw.size();
    const uint32_t code = compress ? codec->Compress(image.bytes.data(), image.bytes.size(), packed.data(), size)
                                   : codec->Decompress(packed.data(), packedSize, raw.data(), size);
    if (code != 0)
      state.SkipWithError("codec failed");
    benchmark::DoNotOptimize(size);
  }
  reportRatio(state, image.bytes.size(), static_cast<std::size_t>(packedSize));
}

void lz4Direct(benchmark::State& state, const Image& image, bool compress)
{
  const int rawSize = static_cast<int>(image.bytes.size());
  std::vector<char> packed(static_cast<std::size_t>(LZ4_compressBound(rawSize)));
  const auto* raw = reinterpret_cast<const char*>(image.bytes.data());
  const int packedSize = LZ4_compress_default(raw, packed.data(), rawSize, static_cast<int>(packed.size()));
  std::vector<char> out(image.bytes.size());
  for (auto _ : state)
  {
    const int result = compress ? LZ4_compress_default(raw, packed.data(), rawSize, static_cast<int>(packed.size()))
                                : LZ4_decompress_safe(packed.data(), out.data(), packedSize, rawSize);
    benchmark::DoNotOptimize(result);
  }
  reportRatio(state, image.bytes.size(), static_cast<std::size_t>(packedSize));
}

void zlibDirect(benchmark::State& state, const Image& image, bool compress)
{
  std::vector<Bytef> packed(compressBound(image.bytes.size()));
  uLongf packedSize = packed.size();
  ::compress(packed.data(), &packedSize, image.bytes.data(), image.bytes.size());
  std::vector<Bytef> out(image.bytes.size());
  for (auto _ : state)
  {
    uLongf size = compress ? packed.size() : out.size();
    const int result = compress ? ::compress(packed.data(), &size, image.bytes.data(), image.bytes.size())
                                : ::uncompress(out.data(), &size, packed.data(), packedSize);
    benchmark::DoNotOptimize(result);
  }
  reportRatio(state, image.bytes.size(), packedSize);
}

#ifdef CORECOMMON_BENCH_ZSTD
void zstdDirect(benchmark::State& state, const Image& image, bool compress)
{
  std::vector<char> packed(ZSTD_compressBound(image.bytes.size()));
  const std::size_t packedSize = ZSTD_compress(packed.data(), packed.size(), image.bytes.data(), image.bytes.size(), 1);
  std::vector<char> out(image.bytes.size());
  for (auto _ : state)
  {
    const std::size_t result =
        compress ? ZSTD_compress(packed.data(), packed.size(), image.bytes.data(), image.bytes.size(), 1)
                 : ZSTD_decompress(out.data(), out.size(), packed.data(), packedSize);
    benchmark::DoNotOptimize(result);
  }
  reportRatio(state, image.bytes.size(), packedSize);
}
#endif

// The wrapper and the library called directly, alternately in one loop on the same
// buffers, so that both see the same memory and the same moment of the machine: the
// counter wrapper_vs_direct is the wrapper's time over the direct call's.
void wrapperVsDirect(benchmark::State& state, const Image& image, const MakeCodec& make, bool compress,
                     const std::function<void(const uint8_t*, std::size_t, uint8_t*, std::size_t, bool)>& direct)
{
  auto codec = make();
  std::vector<uint8_t> packed;
  unsigned long long packedSize = 0;
  if (!packOnce(state, *codec, image, packed, packedSize))
    return;
  std::vector<uint8_t> scratch(std::max(packed.size(), image.bytes.size()));
  using Clock = std::chrono::steady_clock;
  Clock::duration wrapped{}, plainCall{};
  for (auto _ : state)
  {
    const Clock::time_point start = Clock::now();
    unsigned long long size = scratch.size();
    const uint32_t code = compress ? codec->Compress(image.bytes.data(), image.bytes.size(), scratch.data(), size)
                                   : codec->Decompress(packed.data(), packedSize, scratch.data(), size);
    const Clock::time_point middle = Clock::now();
    direct(compress ? image.bytes.data() : packed.data(), compress ? image.bytes.size() : packedSize, scratch.data(),
           scratch.size(), compress);
    const Clock::time_point end = Clock::now();
    if (code != 0)
      state.SkipWithError("codec failed");
    wrapped += middle - start;
    plainCall += end - middle;
    benchmark::ClobberMemory();
  }
  reportRatio(state, 2 * image.bytes.size(), 2 * static_cast<std::size_t>(packedSize));
  state.counters["wrapper_vs_direct"] =
      std::chrono::duration<double>(wrapped).count() / std::chrono::duration<double>(plainCall).count();
}

void lz4Call(const uint8_t* in, std::size_t inSize, uint8_t* out, std::size_t outSize, bool compress)
{
  const auto* source = reinterpret_cast<const char*>(in);
  auto* destination = reinterpret_cast<char*>(out);
  benchmark::DoNotOptimize(
      compress ? LZ4_compress_default(source, destination, static_cast<int>(inSize), static_cast<int>(outSize))
               : LZ4_decompress_safe(source, destination, static_cast<int>(inSize), static_cast<int>(outSize)));
}

void zlibCall(const uint8_t* in, std::size_t inSize, uint8_t* out, std::size_t outSize, bool compress)
{
  uLongf size = outSize;
  benchmark::DoNotOptimize(compress ? ::compress(out, &size, in, inSize) : ::uncompress(out, &size, in, inSize));
}

template <typename Codec>
MakeCodec plain()
{
  return [] { return std::make_unique<Codec>(); };
}

MakeCodec fixedBits(int bits)
{
  return [bits]
  {
    auto codec = std::make_unique<RTE::C_FixedBitsOfWord>();
    codec->SetParameters({{"FixedBits", bits}, {"Columns", qulonglong(columns)}, {"Rows", qulonglong(rows)}});
    return codec;
  };
}

MakeCodec imx(bool parallel)
{
  return [parallel]
  {
    auto codec = std::make_unique<RTE::C_IMX>();
    codec->SetParameters({{"Columns", qulonglong(columns)}, {"Rows", qulonglong(rows)}, {"Parallel", parallel}});
    return codec;
  };
}

[[maybe_unused]] const bool registered = []
{
  for (const Image& image : images())
  {
    const std::string& n = image.name;
    benchmark::RegisterBenchmark(("memcpy/" + n).c_str(), memcpyBench, image);
    // vector false: the portable loops; imx: which IMX encoder and whether AVX-512 may run.
    const auto both = [&](const std::string& codec, const MakeCodec& make, bool vector,
                          RTE::ImxCoder::VectorLoops imx = RTE::ImxCoder::VectorLoops::Chosen, bool wide = true)
    {
      for (bool compress : {true, false})
        benchmark::RegisterBenchmark((codec + (compress ? "/compress/" : "/decompress/") + n).c_str(),
                                     [make, vector, compress, imx, wide, &image](benchmark::State& state)
                                     {
                                       RTE::PackKernels::setPortableOnly(!vector);
                                       RTE::ImxCoder::setVectorLoops(imx);
                                       RTE::ImxCoder::allowAvx512(wide);
                                       codecBench(state, image, make, compress);
                                       RTE::ImxCoder::allowAvx512(true);
                                       RTE::ImxCoder::setVectorLoops(RTE::ImxCoder::VectorLoops::Chosen);
                                       RTE::PackKernels::setPortableOnly(false);
                                     });
    };
    both("12bit", plain<RTE::C_12bit>(), true);
    both("12bit-portable", plain<RTE::C_12bit>(), false);
    both("FixedBits8", fixedBits(8), true);
    both("FixedBits8-portable", fixedBits(8), false);
    both("FixedBits12", fixedBits(12), true);
    both("FixedBits12-portable", fixedBits(12), false);
    both("IMX", imx(false), true);
    both("IMX-avx2", imx(false), true, RTE::ImxCoder::VectorLoops::Chosen, false);
    both("IMX-blocks", imx(false), true, RTE::ImxCoder::VectorLoops::Blocks);
    both("IMX-groups", imx(false), true, RTE::ImxCoder::VectorLoops::Groups);
    both("IMX-groups-avx2", imx(false), true, RTE::ImxCoder::VectorLoops::Groups, false);
    both("IMX-portable", imx(false), false);
    // Wall-clock time of the row-parallel encoder on one and on two threads.
    for (unsigned threads : {1u, 2u})
      benchmark::RegisterBenchmark(("IMX-threads" + std::to_string(threads) + "/compress/" + n).c_str(),
                                   [&image, threads](benchmark::State& state)
                                   {
                                     RTE::ImxCoder::setParallelThreads(threads);
                                     codecBench(state, image, imx(true), true);
                                     RTE::ImxCoder::setParallelThreads(0);
                                   })
          ->MeasureProcessCPUTime()
          ->UseRealTime();
    both("LZ4", plain<RTE::C_LZ4>(), true);
    both("Zlib", plain<RTE::C_Zlib>(), true);
    for (bool compress : {true, false})
    {
      const std::string direction = compress ? "/compress/" : "/decompress/";
      benchmark::RegisterBenchmark(("LZ4-vs-direct" + direction + n).c_str(),
                                   [&image, compress](benchmark::State& state)
                                   { wrapperVsDirect(state, image, plain<RTE::C_LZ4>(), compress, lz4Call); });
      benchmark::RegisterBenchmark(("Zlib-vs-direct" + direction + n).c_str(),
                                   [&image, compress](benchmark::State& state)
                                   { wrapperVsDirect(state, image, plain<RTE::C_Zlib>(), compress, zlibCall); });
      benchmark::RegisterBenchmark(("lz4-direct" + direction + n).c_str(), lz4Direct, image, compress);
      benchmark::RegisterBenchmark(("zlib-direct" + direction + n).c_str(), zlibDirect, image, compress);
#ifdef CORECOMMON_BENCH_ZSTD
      benchmark::RegisterBenchmark(("zstd1-direct" + direction + n).c_str(), zstdDirect, image, compress);
#endif
    }
  }
  return true;
}();

} // namespace
