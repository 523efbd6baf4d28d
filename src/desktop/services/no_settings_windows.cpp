#include "desktop/services/no_settings.h"

#include <QSettings>

#include <windows.h>

namespace varnoth {

namespace {

// What QFileDialog reads and writes; QSettings adds the last part of the key.
const QString organisation = QStringLiteral("QtProject");
const QString group = QStringLiteral("FileDialog");
constexpr const wchar_t* parent_key = LR"(Software\QtProject)";
constexpr const wchar_t* key_of_settings = LR"(Software\QtProject\OrganizationDefaults)";

void delete_if_empty(const wchar_t* name) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, name, 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return;
    }
    DWORD keys = 0;
    DWORD values = 0;
    const LSTATUS status = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values,
                                            nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(key);
    if (status == ERROR_SUCCESS && keys == 0 && values == 0) {
        RegDeleteKeyW(HKEY_CURRENT_USER, name);
    }
}

} // namespace

void keep_no_settings() {}

UnchangedRegistry::UnchangedRegistry() {
    QSettings settings(QSettings::UserScope, organisation);
    settings.beginGroup(group);
    for (const QString& key : settings.allKeys()) {
        before_.insert(key, settings.value(key));
    }
}

UnchangedRegistry::~UnchangedRegistry() {
    {
        QSettings settings(QSettings::UserScope, organisation);
        settings.remove(group);
        settings.beginGroup(group);
        for (auto it = before_.cbegin(); it != before_.cend(); ++it) {
            settings.setValue(it.key(), it.value());
        }
    }
    delete_if_empty(key_of_settings);
    delete_if_empty(parent_key);
}

} // namespace varnoth
