#pragma once

// The names of the outline operations, of their pane and of what travels in their parameters, spelled once. Parameter
// keys that other panes use too are in <common/param_keys.h>.
namespace OutlineId {
constexpr char Open[] = "vn_outline"; // the pane's context menu has the same name
constexpr char AddFromOutside[] = "d_addoutline";
constexpr char Add[] = "d_outline_add";
constexpr char AddSub[] = "d_outline_addsub";
constexpr char BatchAdd[] = "d_outline_batchadd";
constexpr char Del[] = "d_outline_del";
constexpr char DelAll[] = "d_outline_delall";
constexpr char Rename[] = "d_outline_rename";
constexpr char ResetPos[] = "d_outline_resetpos";
constexpr char Wordwrap[] = "d_outline_wordwrap";
constexpr char ExpandSub[] = "d_outline_expandsub";
constexpr char ExpandOrCollapse[] = "d_outline_expandorcollapse";
constexpr char Pane[] = "ui.navis.outline";
constexpr char PageName[] = "Catalog"; // the object name of the pane's page
} // namespace OutlineId

namespace OutlineParam {
constexpr char Title[] = "title";
constexpr char PageId[] = "pageId";
constexpr char Node[] = "node"; // followed by a position in decimal
} // namespace OutlineParam
