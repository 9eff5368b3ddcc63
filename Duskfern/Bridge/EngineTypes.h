#pragma once

#include "Foundation/Formatters.h"
#include "JunkCleaner/JunkStore.h"
#include "SpaceScan/FileCategory.h"
#include "SpaceScan/ScanStore.h"
#include "StorageOverview/HomeStore.h"

#include <QtCore/QObject>
#include <QtQml/QQmlEngine>

/// The types of the engine that QML uses, declared here because the engine does not link QtQml.

struct ScanStoreType {
    Q_GADGET
    QML_FOREIGN(ScanStore)
    QML_NAMED_ELEMENT(ScanStore)
    QML_UNCREATABLE("The window has one, made at launch")
};

struct HomeStoreType {
    Q_GADGET
    QML_FOREIGN(HomeStore)
    QML_NAMED_ELEMENT(HomeStore)
    QML_UNCREATABLE("Each visit to the home screen has one, made for it")
};

struct JunkStoreType {
    Q_GADGET
    QML_FOREIGN(JunkStore)
    QML_NAMED_ELEMENT(JunkStore)
    QML_UNCREATABLE("Each visit to the screen has one, made for it")
};

struct VolumeInfoType {
    Q_GADGET
    QML_FOREIGN(VolumeInfo)
    QML_VALUE_TYPE(volumeInfo)
};

struct StorageCategoryType {
    Q_GADGET
    QML_FOREIGN(StorageCategory)
    QML_VALUE_TYPE(storageCategory)
};

/// The modes of `ScanStore` as enumerators for QML, which must begin with a capital.
namespace ModeNames {
Q_NAMESPACE
QML_NAMED_ELEMENT(Mode)
enum Value {
    Home = static_cast<int>(ScanStore::Mode::home),
    Space = static_cast<int>(ScanStore::Mode::space),
    Junk = static_cast<int>(ScanStore::Mode::junk),
};
Q_ENUM_NS(Value)
}  // namespace ModeNames

/// `Formatters` as a QML singleton.
class QmlFormatters : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Formatters)
    QML_SINGLETON

public:
    Q_INVOKABLE static QString size(qint64 bytes) { return Formatters::size(bytes); }
    Q_INVOKABLE static QString grouped(qint64 number) { return Formatters::grouped(number); }
};

/// The file categories in their order, for the rows of the sidebar.
class QmlFileCategories : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(FileCategories)
    QML_SINGLETON

public:
    Q_PROPERTY(QStringList titles READ titles CONSTANT)
    Q_PROPERTY(QStringList icons READ icons CONSTANT)
    [[nodiscard]] static QStringList titles() { return all(FileCategories::rawValue); }
    [[nodiscard]] static QStringList icons() { return all(FileCategories::icon); }

private:
    static QStringList all(QString (*text)(FileCategory)) {
        QStringList texts;
        for (const FileCategory category : FileCategories::allCases) {
            texts.append(text(category));
        }
        return texts;
    }
};
