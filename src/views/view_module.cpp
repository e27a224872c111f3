// SPDX-License-Identifier: MIT
#include "views/view_module.h"

#include "library/library_view_model.h"
#include "library/user/language_setting.h"
#include "views/access/item_interface.h"
#include "views/library/covers/cover_image_provider.h"
#include "views/library/covers/stored_covers.h"
#include "views/palette.h"

#include <QGuiApplication>
#include <QQmlEngine>

// Made by the build from the classes that are marked for QML.
void qml_register_types_Halvane();

namespace halvane::views {

using namespace Qt::StringLiterals;

namespace {

constexpr auto moduleProperty = "halvaneViews";

} // namespace

ViewModule::ViewModule(QQmlEngine& engine, LibraryViewModel& library)
    : m_engine(engine)
    , m_library(library)
    , m_strings([&library] { return library.language()->resolvedLanguage(); }) {
    qml_register_types_Halvane();
    QAccessible::installFactory(&interfaceOfItem);
    // The font of texts that name no style.
    QFont font = QGuiApplication::font();
    font.setFamilies(AppPalette().font(13, QFont::Normal).families());
    QGuiApplication::setFont(font);
    connect(library.language(), &LanguageSetting::languageChanged, &m_strings,
            &Strings::languageChanged);
    engine.setProperty(moduleProperty, QVariant::fromValue<QObject*>(this));
    engine.addImportPath(u"qrc:/qt/qml"_s);
    engine.addImageProvider(
        u"cover"_s, new CoverImageProvider(std::make_shared<StoredCovers>(m_library.covers())));
}

ViewModule::~ViewModule() {
    static_cast<CoverImageProvider*>(m_engine.imageProvider(u"cover"_s))->close();
    m_engine.removeImageProvider(u"cover"_s);
    m_engine.setProperty(moduleProperty, {});
}

QUrl ViewModule::root() {
    return QUrl(u"qrc:/qt/qml/Halvane/"_s);
}

ViewModule* ViewModule::of(const QQmlEngine* engine) {
    return qobject_cast<ViewModule*>(engine->property(moduleProperty).value<QObject*>());
}

} // namespace halvane::views
