#include "platform/qt/DriveList.h"

#include <algorithm>
#include <array>
#include <vector>

#include <QFileInfo>
#include <QStorageInfo>

#include "platform/folders.h"
#include "platform/qt/look.h"

namespace varnoth {

namespace {

/// What is no volume that a user keeps files on.
constexpr std::array<std::string_view, 29> system_types{
    "autofs",    "binfmt_misc", "bpf",      "cgroup",    "cgroup2", "configfs",        "debugfs",
    "devpts",    "devtmpfs",    "efivarfs", "efivars",   "fusectl", "hugetlbfs",       "mqueue",
    "nsfs",      "proc",        "pstore",   "ramfs",     "rootfs",  "rpc_pipefs",      "securityfs",
    "selinuxfs", "squashfs",    "sysfs",    "systemd-1", "tracefs", "fuse.gvfsd-fuse", "fuse.portal",
    "fuse.lxcfs"};

QString described(const QStorageInfo& volume) {
    const QString root = volume.rootPath();
    return volume.name().isEmpty() ? root : root + QStringLiteral(" [") + volume.name() + u']';
}

} // namespace

bool is_system_volume(const std::string& root, std::string_view type) {
    if (type == "overlay" || std::ranges::find(system_types, type) != system_types.end()) {
        return true;
    }
    if (is_within(root, "/run")) {
        return type == "tmpfs"; // sticks and discs may be mounted there
    }
    return is_within(root, "/proc") || is_within(root, "/sys") || is_within(root, "/dev");
}

DriveList::DriveList(const QString& name, QWidget* parent) : DropDownList(name, parent) {
    const QStorageInfo root = QStorageInfo::root();
    std::vector<QStorageInfo> volumes{root};
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        // A single file may be mounted too.
        if (volume.isReady() && volume.rootPath() != root.rootPath() &&
            QFileInfo(volume.rootPath()).isDir() &&
            !is_system_volume(volume.rootPath().toStdString(), volume.fileSystemType().toStdString())) {
            volumes.push_back(volume);
        }
    }
    for (const QStorageInfo& volume : volumes) {
        if (findData(volume.rootPath()) < 0) { // several may be mounted in one place
            AddItem(described(volume));
            setItemData(count() - 1, volume.rootPath());
        }
    }
    show_drive_of(current_folder());
    connect(this, &QComboBox::activated, this, &DriveList::Change);
}

std::string DriveList::Drive() const {
    return currentData().toString().toStdString();
}

void DriveList::show_drive_of(const std::string& folder) {
    int best = 0;
    for (int line = 1; line < count(); ++line) {
        const QString root = itemData(line).toString();
        if (is_within(folder, root.toStdString()) && root.size() > itemData(best).toString().size()) {
            best = line;
        }
    }
    if (count() > 0 && !is_within(folder, itemData(best).toString().toStdString())) {
        return;
    }
    setCurrentIndex(best);
}

} // namespace varnoth
