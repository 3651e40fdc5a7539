// Parameter trees, categories and every node kind in the settings tree.
//
//   Storage::SettingsDocument document(path, Storage::AutoSync::Off);
//   Storage::SerializeTo(*document.CreateNode("Camera"), tree);  // class "ParameterTree"
//   document.Save();
//   ...
//   std::shared_ptr<RTE::Parameter::C_Tree> loaded;
//   Storage::DeserializeFrom(*document.GetNode("Camera"), loaded);
//   tree->copyValuesFrom(*loaded);
//
// Each node is one settings node whose class is its type name ("Double", "Category",
// ...) with the leaves "Label", "Name", "Description", "AccessMode", "VisibilityLevel",
// then its kind's content. Nodes holding nodes write node lists ("ChildList", "Items",
// "Entries"; "Root" for a tree) of class "list", version 1, one collection item "item"
// per node. Not stored: preferred editors, the precision of doubles, the step and
// precision of numeric lists, action callbacks, list entry makers.
//
// Writing throws Storage::EmptyObjectError for an empty pointer (also inside a list) and
// Storage::UnsupportedNodeTypeError for a node kind without a writer. Reading makes the
// nodes through their factories, so a stored value outside its stored range throws the
// node's out-of-range failure; an unknown class throws UnsupportedNodeTypeError; a
// missing leaf throws Storage::NotExistingSetting; a node of another class than the one
// asked for throws Storage::SettingHasWrongClass; an access mode or visibility level
// outside its enumeration throws Storage::InvalidValue. A failed read leaves the output
// pointer as it was.
#pragma once

#include <Core/Common/Parameter/C_Tree.h>
#include <Core/Common/Storage/Settings.h>

#include <memory>

namespace Storage
{

CORECOMMON_EXPORT Settings& SerializeTo(Settings& settings, const std::shared_ptr<RTE::Parameter::C_Tree>& tree);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& settings, std::shared_ptr<RTE::Parameter::C_Tree>& tree);

// Any node, written and read by the kind its type name (or stored class) names.
CORECOMMON_EXPORT Settings& SerializeTo(Settings& settings, const std::shared_ptr<RTE::Parameter::C_Node>& node);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& settings, std::shared_ptr<RTE::Parameter::C_Node>& node);

#define CORECOMMON_PARAMETER_STORAGE(Kind)                                                                             \
  CORECOMMON_EXPORT Settings& SerializeTo(Settings& settings, const std::shared_ptr<RTE::Parameter::Kind>& node);      \
  CORECOMMON_EXPORT void DeserializeFrom(const Settings& settings, std::shared_ptr<RTE::Parameter::Kind>& node);

CORECOMMON_PARAMETER_STORAGE(C_Category)
CORECOMMON_PARAMETER_STORAGE(C_Bool)
CORECOMMON_PARAMETER_STORAGE(C_Integer)
CORECOMMON_PARAMETER_STORAGE(C_Double)
CORECOMMON_PARAMETER_STORAGE(C_IntegerList)
CORECOMMON_PARAMETER_STORAGE(C_DoubleList)
CORECOMMON_PARAMETER_STORAGE(C_Text)
CORECOMMON_PARAMETER_STORAGE(C_TextList)
CORECOMMON_PARAMETER_STORAGE(C_Enumeration)
CORECOMMON_PARAMETER_STORAGE(C_EnumerationEntry)
CORECOMMON_PARAMETER_STORAGE(C_List)
CORECOMMON_PARAMETER_STORAGE(C_Action)

#undef CORECOMMON_PARAMETER_STORAGE

} // namespace Storage
