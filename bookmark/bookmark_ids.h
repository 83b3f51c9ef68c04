#pragma once

// The names of the bookmark operations and of their pane, spelled once. Parameter keys are in <common/param_keys.h>.
namespace BookmarkId {
constexpr char Add[] = "d_addbookmark";
constexpr char Delete[] = "d_bookmarkdelete";
constexpr char DeleteAll[] = "d_bookmarkdeleteall";
constexpr char Rename[] = "d_bookmarkrename";
constexpr char ResetPosition[] = "d_bookmarkresetposition";
constexpr char Wrap[] = "d_bookmarkwrap";
constexpr char Open[] = "vn_bookmark"; // the pane's context menu has the same name
constexpr char Pane[] = "ui.navis.bookmark";
} // namespace BookmarkId
