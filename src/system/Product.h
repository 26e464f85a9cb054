#pragma once
// Where the product keeps its data: folders and files, unexpanded as all stored paths are, and registry keys. Constants
// only; any thread.

namespace lumenor::product {

// The user's data.
inline constexpr wchar_t makerFolder[] = L"%appdata%\\Tarnwick";
inline constexpr wchar_t userFolder[] = L"%appdata%\\Tarnwick\\Lumenor";
inline constexpr wchar_t payloadFolder[] = L"%appdata%\\Tarnwick\\Lumenor\\ruq\\";

// The data of all users.
inline constexpr wchar_t stubFolder[] = L"%programdata%\\Tarnwick\\Lumenor\\LangRes"; // and pictures of the stubs
inline constexpr wchar_t textFolder[] = L"%programdata%\\Tarnwick\\Lumenor\\BaseContent\\LangRes";
inline constexpr wchar_t imageCacheFolder[] = L"%programdata%\\Tarnwick\\Lumenor\\ImageCache\\";
inline constexpr wchar_t logFolder[] = L"%ProgramData%\\Tarnwick\\Lumenor\\Logs\\";

// The installation, below either of the two program folders.
inline constexpr wchar_t installFolder[] = L"\\Tarnwick\\Lumenor";
inline constexpr wchar_t mainAppFile[] = L"\\Tarnwick\\Lumenor\\Lumenor.exe";
inline constexpr wchar_t dockFile[] = L"\\Tarnwick\\Lumenor\\Dock\\LumenorDock.exe";
inline constexpr wchar_t tourFile[] = L"%ProgramFiles%\\Tarnwick\\Lumenor\\LumenorVideo\\doc.exe";

// The user's settings: those of the dock, and those of the usage tracking.
inline constexpr wchar_t dockKey[] = L"HKEY_CURRENT_USER\\Software\\Tarnwick\\Lumenor";
inline constexpr wchar_t trackingKey[] = L"HKEY_CURRENT_USER\\SOFTWARE\\Tarnwick\\Lumenor\\Dock";
inline constexpr wchar_t trackingKey32[] = L"HKEY_CURRENT_USER\\SOFTWARE\\Wow6432Node\\Tarnwick\\Lumenor\\Dock";

// Written by the installers of the product family: facts about the machine, and where the collector is.
inline constexpr wchar_t machineKey[] = L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarnwick\\System Properties";
inline constexpr wchar_t machineKey32[] = L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tarnwick\\System Properties";
inline constexpr wchar_t collectorKey[] = L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarnwick\\MirrApp";
inline constexpr wchar_t collectorKey32[] = L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tarnwick\\MirrApp";

} // namespace lumenor::product
