#include "app/widgets/QuillonStyle.h"

#include "app/widgets/PanelMetrics.h"
#include "app/widgets/PanelPalette.h"
#include "app/widgets/StyleDrawing.h"

#include <QApplication>
#include <QComboBox>
#include <QPainter>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOption>

namespace quillon {

namespace {

/// The name of the property of a push button that holds its rank.
constexpr const char *RANK = "quillonRank";

constexpr int MENU_BORDER = 1;
constexpr int MENU_MARGIN = 4;
constexpr int SCROLL_BAR_WIDTH = 12;
/// The gap between the frame of a field and its text, besides what the toolkit leaves.
constexpr int LINE_EDIT_SIDE = 4;

/// Returns the rank, which is that of a control for a button that has none.
ButtonRank rankOf(const QWidget *button)
{
    return button == nullptr ? ButtonRank::control
                             : static_cast<ButtonRank>(button->property(RANK).toInt());
}

bool isDropDown(const QWidget *widget)
{
    return qobject_cast<const QComboBox *>(widget) != nullptr;
}

/// Returns the option as one of its kind, or null when it is of another kind.
template <typename Option>
const Option *as(const QStyleOption *option)
{
    return qstyleoption_cast<const Option *>(option);
}

/// Returns whether the entry is drawn here. Arrows and other rare parts of menus are not.
bool isPlainEntry(const QStyleOptionMenuItem *item)
{
    return item != nullptr && (item->menuItemType == QStyleOptionMenuItem::Normal ||
                               item->menuItemType == QStyleOptionMenuItem::DefaultItem ||
                               item->menuItemType == QStyleOptionMenuItem::Separator);
}

bool isFramed(const QStyleOption *lineEdit)
{
    const auto *frame = as<QStyleOptionFrame>(lineEdit);
    return frame != nullptr && frame->lineWidth > 0;
}

} // namespace

QPushButton *pushButton(const QString &text, ButtonRank rank, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setProperty(RANK, static_cast<int>(rank));
    button->setAutoDefault(true);
    return button;
}

QuillonStyle::QuillonStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void QuillonStyle::preferDark(bool prefersDark)
{
    auto *style = qobject_cast<QuillonStyle *>(QApplication::style());
    if (style == nullptr || style->prefersDark_ == prefersDark)
        return;
    style->prefersDark_ = prefersDark;
    // The toolkit then takes the desktop's palette anew and polishes it.
    QApplication::setPalette(QPalette());
}

void QuillonStyle::polish(QPalette &palette)
{
    palette = PanelPalette::forDesktop(palette, prefersDark_).controlsPalette();
}

void QuillonStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                 QPainter *painter, const QWidget *widget) const
{
    painter->save();
    switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setOpacity(option->state.testFlag(State_Enabled) ? 1.0
                                                                  : metrics::DISABLED_OPACITY);
        drawing::tickBox(*painter, option->rect, option->state.testFlag(State_On), option->palette);
        break;
    case PE_PanelLineEdit:
        if (isFramed(option))
            drawing::lineEdit(*painter, *option);
        break;
    case PE_Frame:
        drawing::frame(*painter, *option);
        break;
    case PE_PanelMenu:
        drawing::menuPanel(*painter, *option);
        break;
    case PE_FrameMenu: // belongs to the panel
    case PE_FrameTabWidget:
    case PE_FrameTabBarBase:
    case PE_PanelItemViewRow: // a selected item is tinted, not its whole row
        break;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    painter->restore();
}

void QuillonStyle::drawControl(ControlElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    const auto *button = as<QStyleOptionButton>(option);
    const auto *dropDown = as<QStyleOptionComboBox>(option);
    const auto *tab = as<QStyleOptionTab>(option);
    const auto *item = as<QStyleOptionMenuItem>(option);
    painter->save();
    if (element == CE_PushButton && button != nullptr) {
        drawing::button(*painter, *button, rankOf(widget));
    } else if (element == CE_CheckBox && button != nullptr) {
        QStyleOptionButton box = *button;
        box.rect = subElementRect(SE_CheckBoxIndicator, option, widget);
        drawPrimitive(PE_IndicatorCheckBox, &box, painter, widget);
        drawing::tickBoxWords(*painter, *button,
                              subElementRect(SE_CheckBoxContents, option, widget));
    } else if (element == CE_ComboBoxLabel && dropDown != nullptr && !dropDown->editable) {
        drawing::dropDownWords(*painter, *dropDown);
    } else if (element == CE_TabBarTab && tab != nullptr) {
        drawing::tab(*painter, *tab);
    } else if (element == CE_MenuItem && isPlainEntry(item)) {
        drawing::menuItem(*painter, *item, isDropDown(widget));
    } else {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
    painter->restore();
}

void QuillonStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                      QPainter *painter, const QWidget *widget) const
{
    const auto *dropDown = as<QStyleOptionComboBox>(option);
    const auto *slider = as<QStyleOptionSlider>(option);
    painter->save();
    if (control == CC_ComboBox && dropDown != nullptr && !dropDown->editable)
        drawing::dropDown(*painter, *dropDown);
    else if (control == CC_ScrollBar && slider != nullptr)
        drawing::scrollBar(*painter, *slider, drawing::scrollBarPart(*slider, SC_ScrollBarSlider));
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    painter->restore();
}

QSize QuillonStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                     const QSize &contents, const QWidget *widget) const
{
    if (const auto *button = as<QStyleOptionButton>(option); type == CT_PushButton && button)
        return drawing::buttonSize(*button, rankOf(widget));
    if (const auto *tab = as<QStyleOptionTab>(option); type == CT_TabBarTab && tab)
        return drawing::tabSize(*tab);
    if (const auto *item = as<QStyleOptionMenuItem>(option);
        type == CT_MenuItem && isPlainEntry(item) && !isDropDown(widget))
        return drawing::menuItemSize(*item, contents);
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (type == CT_ComboBox)
        return drawing::dropDownSize(size, contents);
    if (type == CT_LineEdit && isFramed(option))
        return size.expandedTo({0, metrics::FORM_CONTROL_HEIGHT});
    return size;
}

QRect QuillonStyle::subElementRect(SubElement element, const QStyleOption *option,
                                   const QWidget *widget) const
{
    if (element == SE_LineEditContents && isFramed(option))
        return QProxyStyle::subElementRect(element, option, widget)
            .adjusted(LINE_EDIT_SIDE, 0, -LINE_EDIT_SIDE, 0);
    const auto *tabs = as<QStyleOptionTabWidgetFrame>(option);
    if (tabs == nullptr)
        return QProxyStyle::subElementRect(element, option, widget);
    const QSize bar = tabs->tabBarSize;
    switch (element) {
    case SE_TabWidgetTabBar:
        // The first word begins where the forms begin.
        return visualRect(option->direction, option->rect,
                          {QPoint(metrics::FORM_MARGIN - metrics::TAB_SIDE, 0), bar});
    case SE_TabWidgetTabPane:
    case SE_TabWidgetTabContents:
        return option->rect.adjusted(0, bar.height(), 0, 0);
    default:
        return QProxyStyle::subElementRect(element, option, widget);
    }
}

QRect QuillonStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                   SubControl part, const QWidget *widget) const
{
    if (const auto *slider = as<QStyleOptionSlider>(option); control == CC_ScrollBar && slider)
        return drawing::scrollBarPart(*slider, part);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

int QuillonStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                              const QWidget *widget) const
{
    switch (metric) {
    case PM_MenuPanelWidth:
        return MENU_BORDER;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return MENU_MARGIN;
    case PM_ScrollBarExtent:
        return SCROLL_BAR_WIDTH;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return metrics::tickBox(widget != nullptr ? widget->fontMetrics()
                                                  : QFontMetrics(QApplication::font()));
    case PM_CheckBoxLabelSpacing:
        return metrics::TICK_BOX_WORDS;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int QuillonStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                            QStyleHintReturn *result) const
{
    switch (hint) {
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_ItemView_ShowDecorationSelected:
        return 0;
    case SH_TabBar_ElideMode:
        return Qt::ElideNone;
    default:
        return QProxyStyle::styleHint(hint, option, widget, result);
    }
}

} // namespace quillon
