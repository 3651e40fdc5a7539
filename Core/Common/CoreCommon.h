// Every public header of the library, for hosts that prefer one include.
#pragma once

// Errors and logging
#include <Core/Common/Exceptions/DataSizeTooLargeForCompression.h>
#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Exceptions/FileDeleteError.h>
#include <Core/Common/Exceptions/FileError.h>
#include <Core/Common/Exceptions/FileOpenError.h>
#include <Core/Common/Exceptions/FileReadError.h>
#include <Core/Common/Exceptions/FileWriteError.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/ParseError.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Exceptions/ThreadExceptionReport.h>
#include <Core/Common/Exceptions/VersionConflict.h>
#include <Core/Common/Logging/ApplicationLogger.h>
#include <Core/Common/Logging/DeveloperInfoText.h>

// Settings storage

// Parameter model

// Units and quantities

// Engine cycle timing

// Device data and compression
#include <Core/Common/Compression/C_12bit.h>
#include <Core/Common/Compression/C_FixedBitsOfWord.h>
#include <Core/Common/Compression/C_IMX.h>
#include <Core/Common/Compression/C_LZ4.h>
#include <Core/Common/Compression/C_Uncompressed.h>
#include <Core/Common/Compression/C_Zlib.h>
#include <Core/Common/Compression/CompressionBlockSize.h>
#include <Core/Common/Compression/I_Compression.h>

// Plug-ins and libraries
#include <Core/Common/Plugins/C_PluginFactory.h>
#include <Core/Common/Plugins/C_PluginObject.h>
#include <Core/Common/Plugins/C_PluginRegistry.h>
#include <Core/Common/Plugins/I_CreationContext.h>
#include <Core/Common/Plugins/I_Plugin.h>
#include <Core/Common/Plugins/I_PluginFactory.h>
#include <Core/Common/Plugins/Library.h>
#include <Core/Common/Plugins/LibraryManager.h>
#include <Core/Common/Plugins/PluginConfiguration.h>
#include <Core/Common/Plugins/PluginExtension.h>

// Recipes

// Platform services
#include <Core/Common/OperatingSystem/C_SystemInfo.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

// Utilities
#include <Core/Common/Utilities/VisibilityLevel.h>

// Geometry

