// `rte isa`: which instruction-set extensions this machine offers the library.
//
//   rte isa
//   SSE2      yes
//   ...
//   AVX-512F  no
#include "Command.h"

#include <Core/Common/Utilities/InstructionSets.h>

namespace
{

int runIsa(const QStringList& arguments)
{
  if (arguments.size() > 1)
  {
    const QString& argument = arguments[1];
    const bool help = argument == QLatin1String("--help") || argument == QLatin1String("-h");
    QTextStream& stream = help ? rte::out() : rte::err();
    if (!help)
      stream << "rte isa: unexpected argument '" << argument << "'\n\n";
    stream << "Usage: rte isa\n\n"
              "Lists the instruction-set extensions the library may use on this machine: SSE2,\n"
              "SSE4.1, POPCNT, AVX, AVX2, AVX-512F, BMI1, BMI2. AVX and later count only when\n"
              "the operating system also supports them. The compressors choose their vector\n"
              "loops by this list.\n";
    return help ? 0 : 2;
  }
  const RTE::InstructionSets& sets = RTE::InstructionSets::host();
  if (!sets.isX86())
  {
    rte::out() << "not x86\n";
    return 0;
  }
  for (int i = 0; i < RTE::InstructionSets::FeatureCount; ++i)
  {
    const auto feature = static_cast<RTE::InstructionSets::E_Feature>(i);
    rte::out() << RTE::InstructionSets::name(feature).leftJustified(10) << (sets.has(feature) ? "yes" : "no") << "\n";
  }
  return 0;
}

const rte::CommandRegistration registration{
    {QStringLiteral("isa"), QStringLiteral("List the processor's instruction-set extensions"), &runIsa}};

} // namespace
