// The interface of the memory compressors: one source buffer in, one destination
// buffer out, and back. Compressors are plug-ins of the domain "Tarvell.Compression",
// made by name through the plug-in factory:
//
//   auto codec = std::dynamic_pointer_cast<RTE::I_Compression>(
//       RTE::C_PluginFactory::GetInstance().CreatePluginObject("Tarvell.Compression", "IMX"));
//   codec->SetParameters({{"Columns", 2048}, {"Rows", 2048}});
//   std::vector<char> packed(codec->GetMaxCompressedSize(image.size()));
//   unsigned long long size = packed.size(); // capacity in, bytes written out
//   if (uint32_t code = codec->Compress(image.data(), image.size(), packed.data(), size))
//     qWarning() << codec->GetErrorText(code);
//
// Compress and Decompress never throw: they return 0 or an error code whose text
// GetErrorText gives. Both read only the source size given and write only up to the
// capacity given in the in/out size.
#pragma once

#include <Core/Common/Plugins/I_Plugin.h>

#include <QString>
#include <QVariantMap>

#include <cstdint>

namespace RTE
{

class CORECOMMON_EXPORT I_Compression : public I_Plugin
{
public:
  // Codes any compressor may return besides its own. They keep clear of the codecs' own
  // small codes, of 0xFFFFFFFD and of the negative results of zlib and LZ4.
  static constexpr uint32_t ErrorNone = 0;
  static constexpr uint32_t ErrorNoDestination = 1;
  static constexpr uint32_t ErrorDestinationTooSmall = 0x00010001;
  // The source ends before the block does (a truncated stream or a short image).
  static constexpr uint32_t ErrorSourceTooShort = 0x00010002;
  // A token of the stream describes more data than the block holds.
  static constexpr uint32_t ErrorCorruptData = 0x00010003;
  // The block is larger than the underlying library can take in one call.
  static constexpr uint32_t ErrorSourceTooLarge = 0x00010004;
  static constexpr uint32_t ErrorInvalidParameter = 0x00010005;
  // A null source with a non-zero size.
  static constexpr uint32_t ErrorNoSource = 0x00010006;
  // The block length is taken from the source size, which is odd.
  static constexpr uint32_t ErrorOddSourceSize = 0x00010007;

  ~I_Compression() override;

  // The largest destination size compressing sourceSize bytes can need; 0 when the
  // codec cannot take a block of that size.
  virtual unsigned long long GetMaxCompressedSize(unsigned long long sourceSize) = 0;
  // Takes the known parameters from the map (numbers or booleans); others are ignored.
  virtual void SetParameters(const QVariantMap& parameters) = 0;
  virtual QVariantMap GetParameters() const = 0;
  // destinationSize: the destination's capacity on entry, the bytes written on return.
  virtual uint32_t Compress(const void* source, unsigned long long sourceSize, void* destination,
                            unsigned long long& destinationSize) = 0;
  // Same convention as Compress.
  virtual uint32_t Decompress(const void* source, unsigned long long sourceSize, void* destination,
                              unsigned long long& destinationSize) = 0;
  // The text for a code returned by this codec; "No error" for unknown codes.
  virtual QString GetErrorText(uint32_t code) const = 0;

  // "Tarvell.Compression", the domain of all compressors.
  std::string GetDomain() const override;

protected:
  // The text of ErrorNoDestination and of the shared codes above; a null text otherwise.
  static QString CommonErrorText(uint32_t code);
  static QString NoErrorText();
};

} // namespace RTE
