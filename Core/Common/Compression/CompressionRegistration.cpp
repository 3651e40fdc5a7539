// Offers the six compressors through the process-wide plug-in factory as soon as the
// library is loaded, in the order of their names.
#include <Core/Common/Compression/C_12bit.h>
#include <Core/Common/Compression/C_FixedBitsOfWord.h>
#include <Core/Common/Compression/C_IMX.h>
#include <Core/Common/Compression/C_LZ4.h>
#include <Core/Common/Compression/C_Uncompressed.h>
#include <Core/Common/Compression/C_Zlib.h>
#include <Core/Common/Plugins/C_PluginRegistry.h>

#include <exception>
#include <memory>

namespace RTE
{
namespace
{

template <typename Codec>
std::unique_ptr<I_Plugin> create(I_CreationContext*)
{
  return std::make_unique<Codec>();
}

template <typename Codec>
void registerCodec()
{
  const Codec codec;
  C_PluginRegistry::GetInstance().RegisterPlugin(codec.GetDomain(), codec.GetName(), codec.GetDescription(),
                                                 &create<Codec>);
}

bool registerCompressors()
{
  try
  {
    registerCodec<C_12bit>();
    registerCodec<C_FixedBitsOfWord>();
    registerCodec<C_IMX>();
    registerCodec<C_LZ4>();
    registerCodec<C_Uncompressed>();
    registerCodec<C_Zlib>();
    return true;
  }
  catch (const std::exception& e)
  {
    C_PluginRegistry::GetInstance().AddError(std::string("Compressors not registered: ") + e.what());
  }
  return false;
}

[[maybe_unused]] const bool registered = registerCompressors();

} // namespace
} // namespace RTE
