// SPDX-License-Identifier: MIT
// Shows the real windows on a made-up library: to look at, or to photograph.
#include "gallery/gallery_world.h"
#include "model/raw_value.h"

#include <QAccessible>
#include <QCommandLineParser>
#include <QFont>
#include <QGuiApplication>

using namespace halvane;
using namespace Qt::StringLiterals;

namespace {

// What assistive technology finds, a line a thing.
void printTree(QAccessibleInterface* thing, int depth) {
    if (!thing || thing->state().invisible)
        return;
    printf("%*s%x %s | %s\n", depth * 2, "", static_cast<unsigned>(thing->role()),
           qPrintable(thing->text(QAccessible::Name)),
           qPrintable(thing->text(QAccessible::Description)));
    for (int i = 0; i < thing->childCount(); ++i)
        printTree(thing->child(i), depth + 1);
}

// Sets a property by its name in QML; false when there is none of that name.
bool setProperty(LibraryViewModel& library, const QString& name, const QString& value) {
    const QByteArray concern = name.section(u'.', 0, 0).toUtf8();
    const QByteArray property = name.section(u'.', 1).toUtf8();
    auto* owner = library.property(concern.constData()).value<QObject*>();
    const QVariant given = value == "true"_L1    ? QVariant(true)
                           : value == "false"_L1 ? QVariant(false)
                                                 : QVariant(value);
    return owner && owner->setProperty(property.constData(), given);
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOptions({
        {u"albums"_s, u"How many albums the library holds."_s, u"count"_s, u"312"_s},
        {u"window"_s, u"Which window: main, mini, panel, help, settings; may be given again."_s,
         u"id"_s, u"main"_s},
        {u"language"_s, u"en or zh."_s, u"language"_s, u"en"_s},
        {u"size"_s, u"Size of the window."_s, u"WxH"_s},
        {u"set"_s, u"Sets a property of one of the library's concerns; may be given again."_s,
         u"concern.name=value"_s},
        {u"tree"_s, u"Prints what assistive technology finds, and ends."_s},
        {u"out"_s, u"Saves a picture of the window there, and ends."_s, u"file"_s},
    });
    options.process(app);

    test::GalleryWorld world(options.value(u"albums"_s).toInt());
    LibraryViewModel& library = world.library();
    if (options.value(u"language"_s) == "zh"_L1)
        library.language()->setLanguageSetting(AppLanguage::simplifiedChinese);
    if (world.plan().albums > 0)
        world.furnish();
    for (const QString& setting : options.values(u"set"_s)) {
        const QString name = setting.section(u'=', 0, 0);
        const QString value = setting.section(u'=', 1);
        if (name == "mode"_L1)
            library.browsing()->selectBrowseMode(static_cast<LibraryMode>(value.toInt()));
        else if (name == "place"_L1)
            library.browsing()->selectSidebarItem(static_cast<SidebarItem>(value.toInt()));
        else if (name == "column"_L1)
            library.tableColumns()->toggle(fromRawValue<TrackOrder>(value).value());
        else if (name == "order"_L1)
            library.tableOrder()->choose(fromRawValue<TrackOrder>(value).value());
        else if (!setProperty(library, name, value))
            qFatal("no such property: %ls", qUtf16Printable(name));
    }
    QQuickWindow* window = nullptr;
    for (const QString& id : options.values(u"window"_s))
        if (window = world.open(id); !window)
            return 1;
    if (const auto size = options.value(u"size"_s).split(u'x'); size.size() == 2)
        window->resize(size[0].toInt(), size[1].toInt());
    if (options.isSet(u"tree"_s)) {
        QAccessible::setActive(true);
        test::GalleryWorld::waitFor([] { return false; }, 500);
        printTree(QAccessible::queryAccessibleInterface(window), 0);
        return 0;
    }
    if (!options.isSet(u"out"_s))
        return app.exec();
    test::GalleryWorld::waitFor([] { return false; }, 2500);
    const bool saved = window->grabWindow().save(options.value(u"out"_s));
    for (const QString& warning : world.warnings())
        fprintf(stderr, "%s\n", qPrintable(warning));
    return saved && world.warnings().isEmpty() ? 0 : 1;
}
