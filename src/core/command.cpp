#include "core/command.h"

#include "core/interaction.h"
#include "core/store/errors.h"

namespace lx {

void RunCommand(const std::function<void()> &command)
{
    try {
        command();
    } catch (const store::StoreError &e) {
        UI().MsgBox(QStringLiteral("Error %1 - %2").arg(e.number()).arg(e.description()),
                    msg::Critical);
    }
}

} // namespace lx
