// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QQuickItem>

namespace halvane::views {

class SpectrumCanvas;

/// What both spectrum displays share: the bands (0...1) and the colour. Redraws when one of them
/// changes and never on its own: geometry for a graphics card, a picture for the software renderer.
/// Main thread, but for updatePaintNode.
class SpectrumItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QList<float> bands READ bands WRITE setBands NOTIFY bandsChanged)
    Q_PROPERTY(QColor tint READ tint WRITE setTint NOTIFY tintChanged)

  public:
    explicit SpectrumItem(QQuickItem* parent = nullptr);

    [[nodiscard]] QList<float> bands() const { return m_bands; }
    void setBands(const QList<float>& bands);
    [[nodiscard]] QColor tint() const { return m_tint; }
    void setTint(const QColor& tint);

  Q_SIGNALS:
    void bandsChanged();
    void tintChanged();

  protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData*) final;
    /// The scene graph's thread, while the main thread waits.
    virtual void draw(SpectrumCanvas& canvas) const = 0;

  private:
    QList<float> m_bands;
    QColor m_tint = Qt::white;
};

/// The bands as one smooth filled shape with a fading fill and a thin outline.
class SpectrumCurveItem : public halvane::views::SpectrumItem {
    Q_OBJECT
    QML_ELEMENT

  public:
    using SpectrumItem::SpectrumItem;

  protected:
    void draw(SpectrumCanvas& canvas) const override;
};

/// 96 bars around a circle, each as long as the bands' level there, and the faint circle itself.
class SpectrumBarsItem : public halvane::views::SpectrumItem {
    Q_OBJECT
    QML_ELEMENT
    /// The circle the bars stand on, and how far a full level reaches outward from it.
    Q_PROPERTY(qreal innerRadius READ innerRadius WRITE setInnerRadius NOTIFY geometryAsked)
    Q_PROPERTY(qreal reach READ reach WRITE setReach NOTIFY geometryAsked)

  public:
    using SpectrumItem::SpectrumItem;

    [[nodiscard]] qreal innerRadius() const { return m_innerRadius; }
    void setInnerRadius(qreal radius);
    [[nodiscard]] qreal reach() const { return m_reach; }
    void setReach(qreal reach);

  Q_SIGNALS:
    void geometryAsked();

  protected:
    void draw(SpectrumCanvas& canvas) const override;

  private:
    qreal m_innerRadius = 0;
    qreal m_reach = 0;
};

} // namespace halvane::views
