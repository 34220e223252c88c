# The targets Host::Utils, Host::ExtensionSystem and Host::Core. A plug-in's shared object goes to the directory
# lib/extpoint/plugins beside those of the host, or to one that the program is given with --plugin-path.
include(CMakeFindDependencyMacro)
find_dependency(Qt5 5.15 COMPONENTS Core Gui Widgets)
include(${CMAKE_CURRENT_LIST_DIR}/ExtPointHostTargets.cmake)
