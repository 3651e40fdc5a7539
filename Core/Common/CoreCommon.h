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
#include <Core/Common/Parameter/C_Action.h>
#include <Core/Common/Parameter/C_Bool.h>
#include <Core/Common/Parameter/C_Category.h>
#include <Core/Common/Parameter/C_Double.h>
#include <Core/Common/Parameter/C_DoubleList.h>
#include <Core/Common/Parameter/C_Enumeration.h>
#include <Core/Common/Parameter/C_EnumerationEntry.h>
#include <Core/Common/Parameter/C_Integer.h>
#include <Core/Common/Parameter/C_IntegerList.h>
#include <Core/Common/Parameter/C_List.h>
#include <Core/Common/Parameter/C_Node.h>
#include <Core/Common/Parameter/C_NumericValueBase.h>
#include <Core/Common/Parameter/C_NumericValueListT.h>
#include <Core/Common/Parameter/C_NumericValueT.h>
#include <Core/Common/Parameter/C_Text.h>
#include <Core/Common/Parameter/C_TextList.h>
#include <Core/Common/Parameter/I_ActionCallback.h>
#include <Core/Common/Parameter/LegacySignalBridge.h>
#include <Core/Common/Parameter/RangeT.h>

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

