// Reads the shared-object name (DT_SONAME) from the bytes of an ELF file; not installed.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace RTE::Elf
{

// The DT_SONAME text of an ELF image (32 or 64 bit, either byte order), found through the
// section headers: the dynamic section and the string table it links to. Empty when the
// image is not ELF, has no dynamic section or no SONAME, or when any offset, size or
// count points outside the image (every one is checked before it is used).
CORECOMMON_EXPORT std::optional<QByteArray> soname(QByteArrayView image);

} // namespace RTE::Elf
