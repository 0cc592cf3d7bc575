#include "ftp/qurlinfo.h"

#include <tuple>

void QUrlInfo::setPermissions(int permissions)
{
    permissionBits = permissions;
    readable = (permissions & (ReadOwner | ReadGroup | ReadOther)) != 0;
    writable = (permissions & (WriteOwner | WriteGroup | WriteOther)) != 0;
    executable = (permissions & (ExeOwner | ExeGroup | ExeOther)) != 0;
}

bool QUrlInfo::lessThan(const QUrlInfo &left, const QUrlInfo &right, SortKey key)
{
    switch (key) {
    case ByDate:
        return left.modified < right.modified;
    case BySize:
        return left.byteCount < right.byteCount;
    case ByName:
        break;
    }
    return left.entryName < right.entryName;
}

bool QUrlInfo::operator==(const QUrlInfo &other) const
{
    const auto fields = [](const QUrlInfo &info) {
        return std::tie(info.entryName, info.permissionBits, info.ownerName, info.groupName, info.byteCount,
                        info.modified, info.read, info.dir, info.file, info.symLink, info.writable,
                        info.readable, info.executable);
    };
    return fields(*this) == fields(other);
}
