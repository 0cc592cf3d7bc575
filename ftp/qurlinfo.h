// One entry of a directory listing: a plain value.
#pragma once

#include <QDateTime>
#include <QMetaType>
#include <QString>

class QUrlInfo
{
public:
    enum PermissionSpec {
        ReadOwner = 0x100,
        WriteOwner = 0x80,
        ExeOwner = 0x40,
        ReadGroup = 0x20,
        WriteGroup = 0x10,
        ExeGroup = 0x08,
        ReadOther = 0x04,
        WriteOther = 0x02,
        ExeOther = 0x01
    };

    enum SortKey { ByName, ByDate, BySize };

    QString name() const { return entryName; }
    /// The bits of PermissionSpec; 0 where the server names none.
    int permissions() const { return permissionBits; }
    QString owner() const { return ownerName; }
    QString group() const { return groupName; }
    /// In bytes.
    qint64 size() const { return byteCount; }
    /// In local time; invalid when the server gave none that can be read.
    QDateTime lastModified() const { return modified; }
    QDateTime lastRead() const { return read; }
    /// Also true for a symbolic link, which may lead to a directory.
    bool isDir() const { return dir; }
    bool isFile() const { return file; }
    bool isSymLink() const { return symLink; }
    /// Whether anyone at all may write; likewise for reading and executing.
    bool isWritable() const { return writable; }
    bool isReadable() const { return readable; }
    bool isExecutable() const { return executable; }

    void setName(const QString &name) { entryName = name; }
    /// Also sets what follows from the bits: writable, readable, executable.
    void setPermissions(int permissions);
    void setOwner(const QString &owner) { ownerName = owner; }
    void setGroup(const QString &group) { groupName = group; }
    void setSize(qint64 size) { byteCount = size; }
    void setLastModified(const QDateTime &time) { modified = time; }
    void setLastRead(const QDateTime &time) { read = time; }
    void setDir(bool isDirectory) { dir = isDirectory; }
    void setFile(bool isRegular) { file = isRegular; }
    void setSymLink(bool isLink) { symLink = isLink; }

    /// Whether left stands before right in ascending order of the key.
    static bool lessThan(const QUrlInfo &left, const QUrlInfo &right, SortKey key);

    /// Equal in every field.
    bool operator==(const QUrlInfo &other) const;
    bool operator!=(const QUrlInfo &other) const { return !(*this == other); }

private:
    QString entryName;
    int permissionBits = 0;
    QString ownerName;
    QString groupName;
    qint64 byteCount = 0;
    QDateTime modified;
    QDateTime read;
    bool dir = false;
    bool file = false;
    bool symLink = false;
    bool writable = false;
    bool readable = false;
    bool executable = false;
};

Q_DECLARE_METATYPE(QUrlInfo)
