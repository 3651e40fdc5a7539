#include <Core/Common/Utilities/InstructionSets.h>

#include <gtest/gtest.h>

using RTE::InstructionSets;
using Feature = RTE::InstructionSets::E_Feature;

namespace
{

// A processor with everything up to AVX-512F whose operating system saves all registers.
InstructionSets::CpuidValues everything()
{
  InstructionSets::CpuidValues v;
  v.highestLeaf = 7;
  v.leaf1Edx = 1U << 26;                                          // SSE2
  v.leaf1Ecx = (1U << 19) | (1U << 23) | (1U << 27) | (1U << 28); // SSE4.1 POPCNT OSXSAVE AVX
  v.leaf7Ebx = (1U << 3) | (1U << 5) | (1U << 8) | (1U << 16);    // BMI1 AVX2 BMI2 AVX512F
  v.xcr0 = 0xE7;
  return v;
}

} // namespace

TEST(InstructionSets, DecodesCpuidAndRequiresOperatingSystemSupport)
{
  EXPECT_EQ(InstructionSets::fromCpuid(everything()).toString(),
            QStringLiteral("SSE2 SSE4.1 POPCNT AVX AVX2 AVX-512F BMI1 BMI2"));

  // The kernel does not save the AVX-512 state: AVX2 stays, AVX-512F goes.
  auto v = everything();
  v.xcr0 = 0x7;
  EXPECT_EQ(InstructionSets::fromCpuid(v).toString(), QStringLiteral("SSE2 SSE4.1 POPCNT AVX AVX2 BMI1 BMI2"));

  // No OSXSAVE: none of the AVX family, whatever XCR0 seems to say.
  v = everything();
  v.leaf1Ecx &= ~(1U << 27);
  EXPECT_EQ(InstructionSets::fromCpuid(v).toString(), QStringLiteral("SSE2 SSE4.1 POPCNT BMI1 BMI2"));

  // YMM state not enabled.
  v = everything();
  v.xcr0 = 0x3;
  EXPECT_FALSE(InstructionSets::fromCpuid(v).has(Feature::AVX));
  EXPECT_FALSE(InstructionSets::fromCpuid(v).has(Feature::AVX2));

  // Leaf 7 is not there: its register is ignored.
  v = everything();
  v.highestLeaf = 6;
  EXPECT_EQ(InstructionSets::fromCpuid(v).toString(), QStringLiteral("SSE2 SSE4.1 POPCNT AVX"));

  EXPECT_EQ(InstructionSets::fromCpuid({}).toString(), QStringLiteral("none"));
  EXPECT_EQ(InstructionSets::notX86().toString(), QStringLiteral("not x86"));
  EXPECT_TRUE(InstructionSets::notX86().names().isEmpty());
}

TEST(InstructionSets, HostAgreesWithTheCompiler)
{
  const InstructionSets& host = InstructionSets::host();
#if defined(__x86_64__)
  ASSERT_TRUE(host.isX86());
  EXPECT_TRUE(host.has(Feature::SSE2)); // every x86-64 has it
  // The compiler's own check also asks the operating system for the AVX family.
  EXPECT_EQ(host.has(Feature::SSE4_1), __builtin_cpu_supports("sse4.1") != 0);
  EXPECT_EQ(host.has(Feature::POPCNT), __builtin_cpu_supports("popcnt") != 0);
  EXPECT_EQ(host.has(Feature::AVX), __builtin_cpu_supports("avx") != 0);
  EXPECT_EQ(host.has(Feature::AVX2), __builtin_cpu_supports("avx2") != 0);
  EXPECT_EQ(host.has(Feature::AVX512F), __builtin_cpu_supports("avx512f") != 0);
  EXPECT_EQ(host.has(Feature::BMI1), __builtin_cpu_supports("bmi") != 0);
  EXPECT_EQ(host.has(Feature::BMI2), __builtin_cpu_supports("bmi2") != 0);
#else
  EXPECT_FALSE(host.isX86());
  EXPECT_EQ(host.toString(), QStringLiteral("not x86"));
#endif
  EXPECT_EQ(&host, &InstructionSets::host());
}
