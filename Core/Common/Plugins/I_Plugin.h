// Base of every object the plug-in factory makes. A plug-in tells which interface
// family (domain) it belongs to, its name inside that family and a short description.
//
//   class Zlib : public RTE::I_Plugin
//   {
//   public:
//     std::string GetDomain() const override { return "Tarvell.Compression"; }
//     std::string GetName() const override { return "Zlib"; }
//     std::string GetDescription() const override { return "zlib deflate"; }
//   };
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <string>

namespace RTE
{

class CORECOMMON_EXPORT I_Plugin
{
public:
  I_Plugin() = default;
  I_Plugin(const I_Plugin&) = default;
  I_Plugin& operator=(const I_Plugin&) = default;
  virtual ~I_Plugin();

  // The interface family, for example "Tarvell.Compression".
  virtual std::string GetDomain() const = 0;
  // The name the plug-in is registered under inside its domain.
  virtual std::string GetName() const = 0;
  // A short text for users.
  virtual std::string GetDescription() const = 0;
};

} // namespace RTE
