#pragma once

#include "Shell/ScreenStores.h"
#include "SpaceScan/ScanStore.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QTimer>

/// What a person who does not see the window is told without asking: the begin, end and result of work, and how many
/// files a filter leaves.
class Announcements : public QObject {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit Announcements(QObject* parent = nullptr);

    /// The stores to watch. Each may be set once.
    Q_PROPERTY(ScanStore* store READ store WRITE setStore NOTIFY storesChanged REQUIRED)
    Q_PROPERTY(ScreenStores* screens READ screens WRITE setScreens NOTIFY storesChanged REQUIRED)
    [[nodiscard]] ScanStore* store() const { return m_store; }
    [[nodiscard]] ScreenStores* screens() const { return m_screens; }
    void setStore(ScanStore* store);
    void setScreens(ScreenStores* screens);
    Q_SIGNAL void storesChanged();

    /// A text to be read aloud.
    Q_SIGNAL void announced(const QString& text);

private:
    void watchScreens();
    void announceFiles();
    void announceRemoval();

    ScanStore* m_store = nullptr;
    ScreenStores* m_screens = nullptr;
    qint64 m_fileCount = 0;
    QTimer m_filterPause;  ///< Waits for the end of typing.
};
