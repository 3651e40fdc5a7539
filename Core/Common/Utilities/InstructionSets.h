// Which processor instruction-set extensions the running machine can use: the one place
// that run-time dispatch (the compressors' vector loops) and diagnostics ask.
//
//   if (RTE::InstructionSets::host().has(RTE::InstructionSets::E_Feature::AVX2))
//     useAvx2Loops();
//   RTE::InstructionSets::host().toString();   // "SSE2 SSE4.1 POPCNT AVX AVX2 BMI1 BMI2"
//
// AVX, AVX2 and AVX-512F count only when the operating system also saves their registers
// on a task switch (OSXSAVE and the XCR0 register read through xgetbv): a processor may
// have AVX while the kernel keeps it off. On other processors nothing is reported and
// toString() reads "not x86".
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>
#include <QStringList>

#include <cstdint>

namespace RTE
{

class CORECOMMON_EXPORT InstructionSets
{
public:
  enum class E_Feature
  {
    SSE2,
    SSE4_1,
    POPCNT,
    AVX,
    AVX2,
    AVX512F,
    BMI1,
    BMI2,
  };
  static constexpr int FeatureCount = 8;

  // The raw answers of the processor that decide the features: cpuid leaf 1 (ECX, EDX),
  // leaf 7 sub-leaf 0 (EBX, only when the highest leaf is 7 or more) and XCR0 (only
  // when OSXSAVE is set).
  struct CpuidValues
  {
    std::uint32_t highestLeaf = 0;
    std::uint32_t leaf1Ecx = 0;
    std::uint32_t leaf1Edx = 0;
    std::uint32_t leaf7Ebx = 0;
    std::uint64_t xcr0 = 0;
  };

  // The running machine, detected once on first use (thread-safe).
  static const InstructionSets& host();
  // The features the given processor answers stand for (x86).
  static InstructionSets fromCpuid(const CpuidValues& values);
  // A machine that is not x86: no features.
  static InstructionSets notX86();

  bool isX86() const { return m_x86; }
  bool has(E_Feature feature) const { return (m_features >> static_cast<int>(feature)) & 1U; }

  // "SSE2", "SSE4.1", "POPCNT", "AVX", "AVX2", "AVX-512F", "BMI1", "BMI2".
  static QString name(E_Feature feature);
  // The names of the features present, in the order of E_Feature.
  QStringList names() const;
  // names() joined with blanks; "none" on x86 without any; "not x86" elsewhere.
  QString toString() const;

private:
  InstructionSets() = default;

  bool m_x86 = false;
  std::uint32_t m_features = 0;
};

} // namespace RTE
