// The progress bar: a sunken field with a row of blocks.
#pragma once

#include "desktop/controls/parts/EdgeLines.h"
#include "desktop/controls/parts/ForwardingControl.h"

namespace varnoth {

/// Parts: `Line1(0)` top, `Line1(3)` left, `Line1(1)` bottom, `Line1(2)` right. Always 360 twips high and at
/// least 360 wide.
class elprogress final : public ForwardingControl {
    Q_OBJECT
    Q_PROPERTY(int ForeColor READ ForeColor)
    Q_PROPERTY(int BackColor READ BackColor)
    Q_PROPERTY(bool Enabled READ Enabled)
    Q_PROPERTY(int Min READ Min)
    Q_PROPERTY(int Max READ Max)
    Q_PROPERTY(int Value READ Value)
    Q_PROPERTY(int Color3DLight READ Color3DLight)
    Q_PROPERTY(int Color3DDark READ Color3DDark)

  public:
    elprogress(const QString& name, QWidget* parent);

    std::int32_t Min() const { return min_; }

    void SetMin(std::int32_t least);

    std::int32_t Max() const { return max_; }

    void SetMax(std::int32_t most);

    std::int32_t Value() const { return value_; }

    /// Clamps the value to Min and Max. Fails with Overflow if the value times the number of cells does not
    /// fit in 32 bits.
    void SetValue(std::int32_t value);

    /// Keeps the arguments for later redraws: `origen` must outlive the control.
    void obtener_imagen_fondo(const DrawingContext& origen, std::int32_t x, std::int32_t y,
                              std::int16_t cantidad) override;

  private:
    struct Background {
        const DrawingContext* origen = nullptr;
        std::int32_t x = 0;
        std::int32_t y = 0;
        std::int16_t cantidad = 0;
    };

    std::int32_t cells() const;
    void redraw();
    void resized() override;
    void show_light() override;
    void show_dark() override;

    EdgeLines edges_{24};
    std::int32_t min_ = 0;
    std::int32_t max_ = 0;
    std::int32_t value_ = 0;
    Background background_;
};

} // namespace varnoth
