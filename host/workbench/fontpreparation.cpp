#include "workbench/fontpreparation.h"

#include <fontconfig/fontconfig.h>

#include <system_error>

namespace Workbench {

FontPreparation::FontPreparation()
{
    try {
        m_thread = std::thread([] { FcInit(); });
    } catch (const std::system_error &) {
        // No further thread is to be had. The first widget reads it, then.
    }
}

FontPreparation::~FontPreparation()
{
    finish();
}

void FontPreparation::finish()
{
    if (m_thread.joinable())
        m_thread.join();
}

} // namespace Workbench
