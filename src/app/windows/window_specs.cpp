// SPDX-License-Identifier: MIT
#include "app/windows/window_specs.h"

#include "presentation/l10n.h"

#include <algorithm>

namespace halvane {

using namespace Qt::StringLiterals;

const std::vector<WindowSpec>& windowSpecs() {
    using Kind = WindowSpec::Kind;
    const auto english = [](L10nKey key) { return L10n::text(key, ResolvedLanguage::english); };
    static const std::vector<WindowSpec> specs{
        {u"main"_s, u"Halvane"_s, u"windows/MainWindow.qml"_s, Kind::hiddenTitleBar,
         QSize(1360, 720), QSize(980, 600)},
        {u"mini"_s,
         english(L10nKey::miniPlayer),
         u"windows/MiniWindow.qml"_s,
         Kind::hiddenTitleBar,
         {},
         {}},
        {u"help"_s, english(L10nKey::helpTitle), u"windows/HelpWindow.qml"_s, Kind::normal, {}, {}},
        {u"settings"_s,
         english(L10nKey::settingsLabel),
         u"windows/SettingsWindow.qml"_s,
         Kind::normal,
         {},
         {}},
        {u"panel"_s, u"Halvane"_s, u"windows/PanelWindow.qml"_s, Kind::popup, {}, {}},
    };
    return specs;
}

const WindowSpec* windowSpec(const QString& id) {
    const auto& specs = windowSpecs();
    const auto found =
        std::find_if(specs.begin(), specs.end(), [&](const auto& spec) { return spec.id == id; });
    return found == specs.end() ? nullptr : &*found;
}

} // namespace halvane
