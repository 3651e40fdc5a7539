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
#include <Core/Common/Storage/Settings.h>
#include <Core/Common/Storage/SettingsDocument.h>
#include <Core/Common/Storage/SettingsStringBasedDocument.h>
#include <Core/Common/Storage/StorageExceptions.h>
#include <Core/Common/Storage/ValueSerialization.h>

// Parameter model

// Units and quantities

// Engine cycle timing

// Device data and compression

// Plug-ins and libraries

// Recipes

// Platform services
#include <Core/Common/OperatingSystem/C_SystemInfo.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

// Utilities
#include <Core/Common/Utilities/VisibilityLevel.h>

// Geometry

