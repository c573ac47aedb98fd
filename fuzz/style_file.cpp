// Style files: the input up to its first NUL byte is styles.conf, the rest (if
// any) styles-common.conf. Both are loaded into a fresh registry, every named
// style the files mention is used, and the files are loaded again as after an
// edit.

#include "FuzzEnvironment.h"
#include "Style.h"
#include "StyleManager.h"

#include <QRegularExpression>
#include <QSet>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzEnvironment& environment = FuzzEnvironment::instance();
    const QByteArray input = FuzzEnvironment::bytes(data, size);
    const int split = input.indexOf('\0');
    const QString assets = environment.freshFolder();
    FuzzEnvironment::write(assets + "/styles.conf", split < 0 ? input : input.left(split));
    FuzzEnvironment::write(assets + "/styles-common.conf", split < 0 ? QByteArray() : input.mid(split + 1));
    for (const char* empty : {"/assets-common.conf", "/assets.conf"})
        FuzzEnvironment::write(assets + empty, "");
    qputenv("ORBIS_ASSETS", assets.toLocal8Bit());

    Singleton<StyleManager>::reset();
    StyleManager* manager = StyleManager::instance();
    manager->loadConfiguration();
    QList<Style> users;
    QSet<QString> names;
    static const QRegularExpression key(QStringLiteral("^\\s*([^=;\\[\\]]+?)\\s*="),
                                        QRegularExpression::MultilineOption);
    auto matches = key.globalMatch(QString::fromUtf8(input));
    while (matches.hasNext() && names.size() < 64)
        names.insert(matches.next().captured(1));
    for (const QString& name : qAsConst(names)) {
        users << Style(name + QStringLiteral("; Width:1"));
        users.last().fontSize();
        users.last().font();
    }
    manager->loadConfiguration();
    users.clear();
    manager->releaseUnusedStyles();
    Singleton<StyleManager>::reset();
    FuzzEnvironment::remove(assets);
    return 0;
}
