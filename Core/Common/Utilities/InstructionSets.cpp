#include <Core/Common/Utilities/InstructionSets.h>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#define RTE_ISA_X86 1
#endif

namespace RTE
{

namespace
{

constexpr bool bit(std::uint64_t value, int index)
{
  return (value >> index) & 1U;
}

#if defined(RTE_ISA_X86)

// xgetbv through its opcode: the intrinsic needs -mxsave for the whole file.
std::uint64_t readXcr0()
{
  std::uint32_t low = 0;
  std::uint32_t high = 0;
  __asm__ volatile(".byte 0x0f, 0x01, 0xd0" : "=a"(low), "=d"(high) : "c"(0));
  return (static_cast<std::uint64_t>(high) << 32) | low;
}

InstructionSets::CpuidValues readCpuid()
{
  InstructionSets::CpuidValues values;
  unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
  values.highestLeaf = __get_cpuid_max(0, nullptr);
  if (values.highestLeaf >= 1 && __get_cpuid(1, &eax, &ebx, &ecx, &edx))
  {
    values.leaf1Ecx = ecx;
    values.leaf1Edx = edx;
  }
  if (values.highestLeaf >= 7 && __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx))
    values.leaf7Ebx = ebx;
  if (bit(values.leaf1Ecx, 27)) // OSXSAVE: xgetbv may be executed
    values.xcr0 = readXcr0();
  return values;
}

#endif

} // namespace

InstructionSets InstructionSets::fromCpuid(const CpuidValues& values)
{
  // XCR0: bit 1 SSE state, bit 2 AVX (upper YMM) state, bits 5-7 the AVX-512 state.
  const bool osSavesYmm = bit(values.leaf1Ecx, 27) && (values.xcr0 & 0x6) == 0x6;
  const bool osSavesZmm = osSavesYmm && (values.xcr0 & 0xE0) == 0xE0;
  const std::uint32_t leaf7 = values.highestLeaf >= 7 ? values.leaf7Ebx : 0;

  InstructionSets sets;
  sets.m_x86 = true;
  const auto set = [&sets](E_Feature feature, bool present)
  {
    if (present)
      sets.m_features |= 1U << static_cast<int>(feature);
  };
  set(E_Feature::SSE2, bit(values.leaf1Edx, 26));
  set(E_Feature::SSE4_1, bit(values.leaf1Ecx, 19));
  set(E_Feature::POPCNT, bit(values.leaf1Ecx, 23));
  set(E_Feature::AVX, osSavesYmm && bit(values.leaf1Ecx, 28));
  set(E_Feature::AVX2, osSavesYmm && bit(values.leaf1Ecx, 28) && bit(leaf7, 5));
  set(E_Feature::AVX512F, osSavesZmm && bit(leaf7, 16));
  set(E_Feature::BMI1, bit(leaf7, 3));
  set(E_Feature::BMI2, bit(leaf7, 8));
  return sets;
}

InstructionSets InstructionSets::notX86()
{
  return InstructionSets();
}

const InstructionSets& InstructionSets::host()
{
#if defined(RTE_ISA_X86)
  static const InstructionSets sets = fromCpuid(readCpuid());
#else
  static const InstructionSets sets = notX86();
#endif
  return sets;
}

QString InstructionSets::name(E_Feature feature)
{
  switch (feature)
  {
  case E_Feature::SSE2:
    return QStringLiteral("SSE2");
  case E_Feature::SSE4_1:
    return QStringLiteral("SSE4.1");
  case E_Feature::POPCNT:
    return QStringLiteral("POPCNT");
  case E_Feature::AVX:
    return QStringLiteral("AVX");
  case E_Feature::AVX2:
    return QStringLiteral("AVX2");
  case E_Feature::AVX512F:
    return QStringLiteral("AVX-512F");
  case E_Feature::BMI1:
    return QStringLiteral("BMI1");
  case E_Feature::BMI2:
    return QStringLiteral("BMI2");
  }
  return {};
}

QStringList InstructionSets::names() const
{
  QStringList list;
  for (int i = 0; i < FeatureCount; ++i)
  {
    if (has(static_cast<E_Feature>(i)))
      list.append(name(static_cast<E_Feature>(i)));
  }
  return list;
}

QString InstructionSets::toString() const
{
  if (!m_x86)
    return QStringLiteral("not x86");
  const QStringList list = names();
  return list.isEmpty() ? QStringLiteral("none") : list.join(QLatin1Char(' '));
}

} // namespace RTE
