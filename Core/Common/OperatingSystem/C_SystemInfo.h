// Facts about the machine and the running process.
//
//   auto kib = RTE::C_SystemInfo::GetInstance().GetMemoryProcess();
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <cstdint>

namespace RTE
{

class CORECOMMON_EXPORT C_SystemInfo
{
public:
  // The process-wide instance, made on first use.
  static C_SystemInfo& GetInstance();

  // Logical processors online (at least 1).
  std::uint32_t GetProcessorNumber() const;

  // Memory the process holds in RAM (its resident set), in KiB; 0 if it cannot be read.
  std::uint64_t GetMemoryProcess() const;

  // Graphics-device-interface objects the process holds; always 0 where the system
  // has no such count (Linux).
  std::uint32_t GetGdiObjectCount() const;

  C_SystemInfo(const C_SystemInfo&) = delete;
  C_SystemInfo& operator=(const C_SystemInfo&) = delete;

private:
  C_SystemInfo() = default;
};

} // namespace RTE
