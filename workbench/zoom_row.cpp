#include "workbench/zoom_row.h"

#include "workbench/icons.h"

#include <QAction>
#include <QColorDialog>
#include <QFontDatabase>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QSlider>
#include <QToolButton>

namespace jostle {

namespace {

QColor toQColor(Rgba color) {
    return {color.red, color.green, color.blue};
}

Rgba toRgba(const QColor& color) {
    const auto channel = [](int value) { return static_cast<std::uint8_t>(value); };
    return {channel(color.red()), channel(color.green()), channel(color.blue()), 255};
}

} // namespace

QString frameText(int frame) {
    return QString("%1").arg(frame, 5, 10, QChar('0'));
}

QString rateText(float rate, double fps) {
    const QString shown = QString::number(static_cast<double>(rate), 'f', 1);
    return (rate < 10.0f ? "0" : "") + shown + "/" + QString::number(fps, 'f', 1);
}

ZoomRow::ZoomRow(SimulationView& simulation, PreviewWidget& preview, QWidget* parent)
    : QWidget(parent), simulation_(simulation), preview_(preview) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    addZoomButtons(*row);
    row->addSpacing(12);
    addViewButtons(*row);
    row->addStretch(1);
    addLabels(*row);
}

QToolButton* ZoomRow::addButton(QHBoxLayout& row, const char* name, const QIcon& icon, const QString& tip) {
    auto* button = new QToolButton(this);
    button->setObjectName(name);
    button->setIcon(icon);
    button->setIconSize({18, 18});
    button->setFixedSize(28, 28);
    button->setAutoRaise(true);
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    row.addWidget(button);
    return button;
}

void ZoomRow::addZoomButtons(QHBoxLayout& row) {
    QToolButton* const out = addButton(row, "zoomOutBtn", icon(Sign::ZoomOut), tr("Zoom out"));
    zoomSld_ = new QSlider(Qt::Horizontal, this);
    zoomSld_->setObjectName("zoomSld");
    zoomSld_->setRange(static_cast<int>(ViewTransform::leastZoom), static_cast<int>(ViewTransform::greatestZoom));
    zoomSld_->setSingleStep(1);
    zoomSld_->setValue(static_cast<int>(preview_.view().zoom));
    zoomSld_->setFixedWidth(180);
    zoomSld_->setToolTip(tr("Zoom, percent"));
    zoomSld_->setAccessibleName(tr("Zoom, percent"));
    row.addWidget(zoomSld_);
    QToolButton* const in = addButton(row, "zoomInBtn", icon(Sign::ZoomIn), tr("Zoom in"));
    QToolButton* const fit = addButton(row, "zoomFitBtn", icon(Sign::ZoomFit), tr("Reset pan and zoom (Z)"));
    connect(out, &QToolButton::clicked, this, &ZoomRow::OnZoomOutBtn);
    connect(in, &QToolButton::clicked, this, &ZoomRow::OnZoomInBtn);
    connect(fit, &QToolButton::clicked, this, &ZoomRow::OnZoomFitBtn);
    connect(zoomSld_, &QSlider::valueChanged, &preview_, &PreviewWidget::setZoom);
    connect(&preview_, &PreviewWidget::zoomChanged, zoomSld_, &QSlider::setValue);
}

void ZoomRow::addViewButtons(QHBoxLayout& row) {
    bgColorBtn_ = addButton(row, "bgColorBtn", {}, tr("Background colour"));
    bgColorBtn_->setFixedSize(20, 20);
    // A rim, as the colour may be that of the window.
    auto* rim = new QFrame(this);
    rim->setObjectName("bgColorRim");
    rim->setStyleSheet("QFrame#bgColorRim { border: 1px solid rgb(120,120,120); }");
    auto* inside = new QHBoxLayout(rim);
    inside->setContentsMargins(1, 1, 1, 1);
    inside->addWidget(bgColorBtn_);
    row.addWidget(rim, 0, Qt::AlignVCenter);
    setBackground(toQColor(preview_.style().background));
    connect(bgColorBtn_, &QToolButton::clicked, this, &ZoomRow::OnBGColorBtn);
    row.addSpacing(4);
    QToolButton* const options = addButton(row, "viewOptionsBtn", icon(Sign::ViewOptions), tr("View options"));
    options->setFixedWidth(40);
    options->setPopupMode(QToolButton::InstantPopup);
    options->setMenu(viewOptionsMenu());
}

void ZoomRow::addLabels(QHBoxLayout& row) {
    const QFont digits = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    auto* fpsSt = new QLabel(rateText(0.0f, simulation_.scene().fps), this);
    fpsSt->setObjectName("fpsSt");
    fpsSt->setToolTip(tr("Frames per second: played, of the composition"));
    auto* frameSt = new QLabel(frameText(simulation_.frame()), this);
    frameSt->setObjectName("frameSt");
    frameSt->setToolTip(tr("Frame"));
    for (QLabel* const label : {fpsSt, frameSt}) {
        label->setFont(digits);
        row.addWidget(label);
        row.addSpacing(8);
    }
    connect(&simulation_, &SimulationView::rateChanged, fpsSt,
            [this, fpsSt](float rate) { fpsSt->setText(rateText(rate, simulation_.scene().fps)); });
    connect(&simulation_, &SimulationView::frameChanged, frameSt,
            [frameSt](int frame) { frameSt->setText(frameText(frame)); });
}

QMenu* ZoomRow::viewOptionsMenu() {
    auto* menu = new QMenu(this);
    menu->setObjectName("ViewOptionsMenu");
    const auto add = [menu](const QString& text, bool checked) {
        QAction* const action = menu->addAction(text);
        action->setCheckable(true);
        action->setChecked(checked);
        return action;
    };
    const ViewOptions& options = preview_.options();
    connect(add(tr("Shapes"), options.shapes), &QAction::toggled, this, &ZoomRow::OnViewOptionsShapes);
    connect(add(tr("Mesh"), options.mesh), &QAction::toggled, this, &ZoomRow::OnViewOptionsMesh);
    connect(add(tr("Bounding Box"), options.boundingBox), &QAction::toggled, this, &ZoomRow::OnViewOptionsBoundingBox);
    connect(add(tr("Local Axes"), options.localAxes), &QAction::toggled, this, &ZoomRow::OnViewOptionsLocalAxes);
    connect(add(tr("Joints"), options.joints), &QAction::toggled, this, &ZoomRow::OnViewOptionsJoints);
    connect(add(tr("Comp Bounds"), options.compBounds), &QAction::toggled, this, &ZoomRow::OnViewOptionsCompBounds);
    menu->addSeparator();
    connect(add(tr("Motion Trails"), preview_.showsTrails()), &QAction::toggled, &preview_, &PreviewWidget::setTrails);
    return menu;
}

void ZoomRow::setOption(bool ViewOptions::*option, bool shown) {
    ViewOptions options = preview_.options();
    options.*option = shown;
    preview_.setOptions(options);
}

void ZoomRow::setBackground(const QColor& color) {
    bgColorBtn_->setStyleSheet(QString("QWidget#bgColorBtn{ background-color: rgb(%1, %2, %3);}")
                                   .arg(color.red())
                                   .arg(color.green())
                                   .arg(color.blue()));
    DrawStyle style = preview_.style();
    style.background = toRgba(color);
    preview_.setStyle(style);
}

void ZoomRow::OnZoomOutBtn() {
    preview_.setZoom(zoomAfterButtonOut(preview_.view().zoom));
}

void ZoomRow::OnZoomInBtn() {
    preview_.setZoom(zoomAfterButtonIn(preview_.view().zoom));
}

void ZoomRow::OnZoomFitBtn() {
    preview_.zoomToFit();
}

void ZoomRow::OnBGColorBtn() {
    const QColor chosen = QColorDialog::getColor(toQColor(preview_.style().background), this, tr("Select Color"));
    if (chosen.isValid()) {
        setBackground(chosen);
    }
}

} // namespace jostle
