// Extra information handed to a plug-in's creator. A context names the plug-in it is
// meant for; the factory calls the creator with it only when domain and name match.
//
//   struct Options : RTE::I_CreationContext
//   {
//     std::string GetDomain() const override { return "Tarvell.Compression"; }
//     std::string GetName() const override { return "Zlib"; }
//     int level = 6;
//   };
//   auto codec = factory.CreatePluginObject("Tarvell.Compression", "Zlib", options);
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <string>

namespace RTE
{

class CORECOMMON_EXPORT I_CreationContext
{
public:
  I_CreationContext() = default;
  I_CreationContext(const I_CreationContext&) = default;
  I_CreationContext& operator=(const I_CreationContext&) = default;
  virtual ~I_CreationContext();

  // The domain of the plug-in this context is meant for.
  virtual std::string GetDomain() const = 0;
  // The name of the plug-in this context is meant for.
  virtual std::string GetName() const = 0;
};

} // namespace RTE
