// The IMX coder's settings and the run-time checks of the vector loops.
#include <Core/Common/Compression/ImxCoder_p.h>

#include <Core/Common/Compression/ImxShared_p.h>
#include <Core/Common/Compression/PackKernels_p.h>
#include <Core/Common/Utilities/InstructionSets.h>

#include <atomic>

namespace RTE::ImxCoder
{
using namespace detail;

namespace
{

std::atomic<bool> avx512Allowed{true};

} // namespace

std::atomic<VectorLoops> detail::vectorLoopsChoice{VectorLoops::Chosen};

#if defined(RTE_IMX_X86)

namespace detail
{

// Whether the AVX2 loops run (they may be switched off for tests and benchmarks).
bool vectorLoops()
{
  using Feature = RTE::InstructionSets::E_Feature;
  static const bool bits = RTE::InstructionSets::host().has(Feature::BMI1) &&
                           RTE::InstructionSets::host().has(Feature::BMI2) &&
                           RTE::InstructionSets::host().has(Feature::POPCNT) && __builtin_cpu_supports("pclmul");
  return bits && PackKernels::usesAvx2();
}

bool wideSupported()
{
  // __builtin_cpu_supports also asks whether the system saves the AVX-512 registers.
  static const bool supported = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                                __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi") &&
                                __builtin_cpu_supports("avx512vbmi2");
  return supported;
}

bool wideLoops()
{
  return wideSupported() && vectorLoops() && avx512Allowed.load(std::memory_order_relaxed);
}

} // namespace detail

#endif

void setVectorLoops(VectorLoops loops)
{
  vectorLoopsChoice.store(loops, std::memory_order_relaxed);
}

void allowAvx512(bool allowed)
{
  avx512Allowed.store(allowed, std::memory_order_relaxed);
}

bool hasAvx512()
{
#if defined(RTE_IMX_X86)
  return wideSupported() && vectorLoops();
#else
  return false;
#endif
}

} // namespace RTE::ImxCoder
