// The persisted properties of a control: names and values in the order of saving.
#pragma once

#include <utility>
#include <vector>

#include <QString>
#include <QVariant>

namespace varnoth {

class PropertyBag {
  public:
    /// Appends a property. A name may be written more than once.
    void WriteProperty(const QString& name, const QVariant& value) { entries_.emplace_back(name, value); }

    /// The first value written under the name, or the fallback.
    QVariant ReadProperty(const QString& name, const QVariant& fallback) const {
        for (const auto& [written, value] : entries_) {
            if (written == name) {
                return value;
            }
        }
        return fallback;
    }

    const std::vector<std::pair<QString, QVariant>>& entries() const { return entries_; }

  private:
    std::vector<std::pair<QString, QVariant>> entries_;
};

} // namespace varnoth
