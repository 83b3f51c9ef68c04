#pragma once

// The keys of operations' parameters, spelled once.
namespace ParamKey {
constexpr char Row[] = "row"; // alone, or followed by a position in decimal
constexpr char Name[] = "name";
constexpr char Result[] = "result";
constexpr char Popup[] = "popup"; // presence counts, not the value
constexpr char Add[] = "add";
constexpr char JsonParam[] = "jsonParam";
constexpr char NodeIdx[] = "nodeIdx";
constexpr char NaviParams[] = "navi_params";

// Prefixes and infixes of row chains.
constexpr char Index[] = "index";
constexpr char DestIndex[] = "destIndex";
constexpr char Del[] = "Del";
constexpr char Mov[] = "Mov";
constexpr char SourceIndex[] = "sourceIndex";
constexpr char Count[] = "Count";
constexpr char DeleteCustomRow[] = "deleteCustomRow";

constexpr char DelCount[] = "delCount";
constexpr char MovIndexCount[] = "MovIndexCount";
constexpr char DestIndexRow[] = "destIndexRow";
constexpr char NewCustomRow[] = "newCustomRow";
} // namespace ParamKey
