#include <QtGlobal>

// A shared library without plug-in metadata, as it may well stand beside plug-ins.
extern "C" Q_DECL_EXPORT int plainLibraryAnswer();

extern "C" int plainLibraryAnswer()
{
    return 1;
}
