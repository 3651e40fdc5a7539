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
#include <Core/Common/Parameter/C_ParameterServer.h>
#include <Core/Common/Parameter/C_Text.h>
#include <Core/Common/Parameter/C_TextList.h>
#include <Core/Common/Parameter/C_Tree.h>
#include <Core/Common/Parameter/CopyHandler.h>
#include <Core/Common/Parameter/DefinitionAutoRegistration.h>
#include <Core/Common/Parameter/DefinitionRegistry.h>
#include <Core/Common/Parameter/Detail/C_ParameterServerImpl.h>
#include <Core/Common/Parameter/I_ActionCallback.h>
#include <Core/Common/Parameter/LegacySignalBridge.h>
#include <Core/Common/Parameter/ParameterStorage.h>
#include <Core/Common/Parameter/RangeT.h>
#include <Core/Common/Parameter/StructuralDiffs.h>

// Units and quantities
#include <Core/Common/Units/AccelerationUnits.h>
#include <Core/Common/Units/AngleUnits.h>
#include <Core/Common/Units/ArbitraryUnits.h>
#include <Core/Common/Units/AutoFormatValueWithUnit.h>
#include <Core/Common/Units/ConcentrationUnits.h>
#include <Core/Common/Units/CrankAngle.h>
#include <Core/Common/Units/DefaultStringToTimeConverter.h>
#include <Core/Common/Units/DefaultTimeToStringConverter.h>
#include <Core/Common/Units/DefaultUnits.h>
#include <Core/Common/Units/DegreesPerCycle.h>
#include <Core/Common/Units/DimensionlessUnits.h>
#include <Core/Common/Units/DiopterUnits.h>
#include <Core/Common/Units/EmptyUnits.h>
#include <Core/Common/Units/FixedNumericFormat.h>
#include <Core/Common/Units/FloatConverter.h>
#include <Core/Common/Units/ForceUnits.h>
#include <Core/Common/Units/Frequency.h>
#include <Core/Common/Units/FrequencySettings.h>
#include <Core/Common/Units/FrequencyUnits.h>
#include <Core/Common/Units/I_StringToTimeConverter.h>
#include <Core/Common/Units/I_TimeToStringConverter.h>
#include <Core/Common/Units/LengthUnits.h>
#include <Core/Common/Units/NumberFormatter.h>
#include <Core/Common/Units/NumericFormat.h>
#include <Core/Common/Units/PartsPerUnit.h>
#include <Core/Common/Units/Percentage.h>
#include <Core/Common/Units/PercentageSettings.h>
#include <Core/Common/Units/PreferredUnits.h>
#include <Core/Common/Units/PressureUnits.h>
#include <Core/Common/Units/RamanShiftUnits.h>
#include <Core/Common/Units/Rpm.h>
#include <Core/Common/Units/ScientificFormat.h>
#include <Core/Common/Units/StopWatch.h>
#include <Core/Common/Units/StrainAccelerationUnits.h>
#include <Core/Common/Units/StrainRate2Units.h>
#include <Core/Common/Units/StrainRateUnits.h>
#include <Core/Common/Units/StrainUnits.h>
#include <Core/Common/Units/SwirlingStrengthDimensionfulUnits.h>
#include <Core/Common/Units/SwirlingStrengthDimensionlessUnits.h>
#include <Core/Common/Units/TemperaturePrecisionUnits.h>
#include <Core/Common/Units/TemperatureUnits.h>
#include <Core/Common/Units/TimeFormatter.h>
#include <Core/Common/Units/TimeRelatedUnits.h>
#include <Core/Common/Units/TimeSpan.h>
#include <Core/Common/Units/TimeSpanSettings.h>
#include <Core/Common/Units/TimeStamp.h>
#include <Core/Common/Units/TimeUnits.h>
#include <Core/Common/Units/ToString.h>
#include <Core/Common/Units/Unit.h>
#include <Core/Common/Units/Units.h>
#include <Core/Common/Units/UnitsRegistry.h>
#include <Core/Common/Units/VelocityUnits.h>

// Engine cycle timing
#include <Core/Common/CycleTimestamps/CrankAngleSample.h>
#include <Core/Common/CycleTimestamps/CycleTimestamps.h>
#include <Core/Common/CycleTimestamps/TimeSample.h>

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
#include <Core/Common/Recipes/Recipe.h>
#include <Core/Common/Recipes/RecipeContext.h>
#include <Core/Common/Recipes/RecipeContextRegistry.h>
#include <Core/Common/Recipes/Recipes.h>

// Platform services
#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/ActivityFeedback.h>
#include <Core/Common/OperatingSystem/C_SystemInfo.h>
#include <Core/Common/OperatingSystem/Condition.h>
#include <Core/Common/OperatingSystem/FileNameOps.h>
#include <Core/Common/OperatingSystem/FileSystem.h>
#include <Core/Common/OperatingSystem/FolderSizeCalculator.h>
#include <Core/Common/OperatingSystem/I_ActivityControl.h>
#include <Core/Common/OperatingSystem/I_ActivityFeedback.h>
#include <Core/Common/OperatingSystem/I_ThreadExceptionHandler.h>
#include <Core/Common/OperatingSystem/JobQueue.h>
#include <Core/Common/OperatingSystem/Locations.h>
#include <Core/Common/OperatingSystem/MemoryDumpManager.h>
#include <Core/Common/OperatingSystem/MultiSignalWaiter.h>
#include <Core/Common/OperatingSystem/OperatingSystem.h>
#include <Core/Common/OperatingSystem/QFileAsFILE.h>
#include <Core/Common/OperatingSystem/SignalWaiter.h>
#include <Core/Common/OperatingSystem/SubActivityFeedback.h>
#include <Core/Common/OperatingSystem/TempFolder.h>
#include <Core/Common/OperatingSystem/Thread.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>
#include <Core/Common/OperatingSystem/ThreadLimit.h>

// Utilities
#include <Core/Common/Utilities/Cipher.h>
#include <Core/Common/Utilities/CipherError.h>
#include <Core/Common/Utilities/ExternalViewer.h>
#include <Core/Common/Utilities/FeatureFlags.h>
#include <Core/Common/Utilities/HierarchyPath.h>
#include <Core/Common/Utilities/IndexRange.h>
#include <Core/Common/Utilities/Indices.h>
#include <Core/Common/Utilities/IniConfigReader.h>
#include <Core/Common/Utilities/InstructionSets.h>
#include <Core/Common/Utilities/Manuals.h>
#include <Core/Common/Utilities/NameWithWildcardEditModel.h>
#include <Core/Common/Utilities/RangeString.h>
#include <Core/Common/Utilities/StringUtilities.h>
#include <Core/Common/Utilities/VersionInfo.h>
#include <Core/Common/Utilities/VisibilityLevel.h>
#include <Core/Common/Utilities/XmlAttribute.h>
#include <Core/Common/Utilities/XmlDocument.h>
#include <Core/Common/Utilities/XmlNode.h>

// Geometry
#include <Core/Common/Math/BoundingBoxT.h>
#include <Core/Common/Math/Detail/CornerBox.h>
#include <Core/Common/Math/Detail/GeometryFields.h>
#include <Core/Common/Math/Euclidean.h>
#include <Core/Common/Math/Point2T.h>
#include <Core/Common/Math/Point3T.h>
#include <Core/Common/Math/Point4T.h>
#include <Core/Common/Math/Rectangle2T.h>
#include <Core/Common/Math/Rectangle3T.h>
#include <Core/Common/Math/Rectangle4T.h>
#include <Core/Common/Math/RotationMatrix3.h>
#include <Core/Common/Math/Size2T.h>
#include <Core/Common/Math/Size3T.h>
#include <Core/Common/Math/Size4T.h>
#include <Core/Common/Math/Vector2T.h>
#include <Core/Common/Math/Vector3T.h>

// Device data
#include <Core/Common/DeviceData/DeviceData.h>
#include <Core/Common/DeviceData/DeviceDataCollection.h>
#include <Core/Common/DeviceData/DeviceDataStatic.h>
#include <Core/Common/DeviceData/DeviceDataT.h>
#include <Core/Common/DeviceData/I_AttributesSink.h>
