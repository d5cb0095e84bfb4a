#pragma once

#include "app/app_delegate.h"
#include "support/link_fixture.h"
#include "voice/voice_control.h"

#include <QObject>
#include <QSettings>

#include <memory>

namespace kelo::test {

/// Tests of the whole display, each with one of its own over a scripted engine and without any
/// settings. There is no desktop around it, whatever the machine offers.
class AppFixture : public QObject {
    Q_OBJECT

protected:
    [[nodiscard]] Link &link() { return link_->link(); }
    [[nodiscard]] QQuickView *window() const { return delegate_->window(); }

    std::unique_ptr<LinkFixture> link_;
    std::unique_ptr<VoiceControl> voice_;
    std::unique_ptr<AppDelegate> delegate_;

protected Q_SLOTS:
    virtual void initTestCase();
    virtual void init();
    virtual void cleanup();
};

} // namespace kelo::test
