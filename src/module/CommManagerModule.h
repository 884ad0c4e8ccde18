#pragma once
// The module's entry object and window: registers the module with the host,
// opens the gateway on the port the host reports, publishes the module's
// objects to QML and loads the page.

#include <QQuickView>
#include <QString>

struct CommLogSite;

class CommManagerModule : public QQuickView
{
    Q_OBJECT
public:
    explicit CommManagerModule(QWindow *parent = nullptr);

    // 0 when already initialised or on success, otherwise the failing code.
    int Init(QString, QString);
    void DeInit();
    bool isInited() const { return m_inited; }

    Q_INVOKABLE void ViewHide();
    Q_INVOKABLE void repaintWindow();
    void PrivateRequestUpdate();

signals:
    void Sig_closeClicked();

protected:
    bool event(QEvent *event) override;

private:
    // Init's steps; their records are Init's (site).
    int registerWithHost(const CommLogSite &site);
    int queryGatewayPort(QString &port, const CommLogSite &site);
    void publishToQml();
    void centreOnPrimaryScreen();
    void onHostLeaves();

    bool m_inited = false;
};
