#include "desktop/widgets/DriveList.h"

#include <algorithm>
#include <array>

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include "core/services/folders.h"
#include "qt/path_text.h"

namespace varnoth {

namespace {

/// File system types that hold no user files, wherever they are mounted.
constexpr std::array<std::string_view, 29> system_types{
    "autofs",    "binfmt_misc", "bpf",      "cgroup",    "cgroup2", "configfs",        "debugfs",
    "devpts",    "devtmpfs",    "efivarfs", "efivars",   "fusectl", "hugetlbfs",       "mqueue",
    "nsfs",      "proc",        "pstore",   "ramfs",     "rootfs",  "rpc_pipefs",      "securityfs",
    "selinuxfs", "squashfs",    "sysfs",    "systemd-1", "tracefs", "fuse.gvfsd-fuse", "fuse.portal",
    "fuse.lxcfs"};

} // namespace

bool is_system_volume(const std::string& root, std::string_view type) {
    if (type == "overlay" || std::ranges::find(system_types, type) != system_types.end()) {
        return true;
    }
    if (is_within(root, "/run")) {
        return type == "tmpfs"; // removable media may be mounted there
    }
    return is_within(root, "/proc") || is_within(root, "/sys") || is_within(root, "/dev");
}

DriveList::DriveList(const QString& name, QWidget* parent) : DropDownList(name, parent) {
#ifndef Q_OS_WIN
    // In some environments the root is not listed as a mount of its own.
    add_volume("/", QStorageInfo::root().name());
#endif
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        // A mount point can be a single file, and can have several volumes.
        const QString root = QDir::toNativeSeparators(volume.rootPath());
        if (volume.isReady() && findData(root) < 0 && QFileInfo(root).isDir() &&
            !is_system_volume(path_of_text(root), volume.fileSystemType().toStdString())) {
            add_volume(root, volume.name());
        }
    }
    show_drive_of(current_folder());
    connect(this, &QComboBox::currentIndexChanged, this, [this] {
        if (!quiet_) {
            emit Change();
        }
    });
}

void DriveList::add_volume(const QString& root, const QString& name) {
    AddItem(name.isEmpty() ? root : root + " [" + name + "]");
    setItemData(count() - 1, root);
}

std::string DriveList::Drive() const {
    return path_of_text(currentData().toString());
}

void DriveList::show_drive_of(const std::string& folder) {
    int best = -1;
    qsizetype longest = 0;
    for (int line = 0; line < count(); ++line) {
        const QString root = itemData(line).toString();
        if (is_within(folder, path_of_text(root)) && root.size() > longest) {
            best = line;
            longest = root.size();
        }
    }
    quiet_ = true;
    setCurrentIndex(best);
    quiet_ = false;
}

} // namespace varnoth
