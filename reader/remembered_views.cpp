#include "remembered_views.h"

#include "view_history.h"

#include <frame/view/settings.h>

#include <QVariantList>
#include <QVariantMap>

namespace {

constexpr int MostFiles = 200;

QString Key()
{
    return QStringLiteral("recent.views");
}

QVariantMap Described(const QString& path, const G_DocView& view)
{
    const ViewPlace place = PlaceOf(view);
    return {{QStringLiteral("file"), path},
            {QStringLiteral("page"), place.page},
            {QStringLiteral("x"), place.cornerMm.x()},
            {QStringLiteral("y"), place.cornerMm.y()},
            {QStringLiteral("mode"), int(view.ZoomMode())},
            {QStringLiteral("zoom"), double(view.GetZoom())},
            {QStringLiteral("twoPages"), view.HasTwoPages()},
            {QStringLiteral("rotation"), view.Rotation()}};
}

void Show(const QVariantMap& remembered, G_DocView& view)
{
    view.SetTwoPages(remembered.value(QStringLiteral("twoPages")).toBool());
    view.SetRotation(remembered.value(QStringLiteral("rotation")).toInt());
    SetZoomOf(view, {static_cast<G_Preferences::ZoomMode>(remembered.value(QStringLiteral("mode")).toInt()),
                     remembered.value(QStringLiteral("zoom")).toFloat()});
    const QPointF corner(remembered.value(QStringLiteral("x")).toDouble(),
                         remembered.value(QStringLiteral("y")).toDouble());
    GoToPlace(view, {remembered.value(QStringLiteral("page")).toInt(), corner});
}

int PositionOf(const QVariantList& all, const QString& path)
{
    for (int i = 0; i < all.size(); ++i) {
        if (all.at(i).toMap().value(QStringLiteral("file")).toString() == path)
            return i;
    }
    return -1;
}

} // namespace

void RememberedViews::Remember(const QString& path, const G_DocView& view)
{
    QVariantList all = G_SettingMgr::Instance()->ConfigValue(Key()).toList();
    const int known = PositionOf(all, path);
    if (known >= 0)
        all.removeAt(known);
    all.prepend(Described(path, view));
    while (all.size() > MostFiles)
        all.removeLast();
    G_SettingMgr::Instance()->SetConfigValue(Key(), all);
}

bool RememberedViews::Restore(const QString& path, G_DocView& view) const
{
    const QVariantList all = G_SettingMgr::Instance()->ConfigValue(Key()).toList();
    const int known = PositionOf(all, path);
    if (known < 0)
        return false;
    Show(all.at(known).toMap(), view);
    return true;
}
