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
#include <Core/Common/Units/CrankAngle.h>
#include <Core/Common/Units/DegreesPerCycle.h>
#include <Core/Common/Units/Frequency.h>
#include <Core/Common/Units/Percentage.h>
#include <Core/Common/Units/Rpm.h>
#include <Core/Common/Units/StopWatch.h>
#include <Core/Common/Units/TimeSpan.h>
#include <Core/Common/Units/TimeStamp.h>

// Engine cycle timing
#include <Core/Common/CycleTimestamps/CrankAngleSample.h>
#include <Core/Common/CycleTimestamps/CycleTimestamps.h>
#include <Core/Common/CycleTimestamps/TimeSample.h>

// Device data and compression

// Plug-ins and libraries

// Recipes

// Platform services
#include <Core/Common/OperatingSystem/C_SystemInfo.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

// Utilities
#include <Core/Common/Utilities/VisibilityLevel.h>

// Geometry

