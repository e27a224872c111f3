// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/file_chooser.h"

#include <functional>
#include <memory>

namespace halvane {

/// The desktop's own file panel, by org.freedesktop.portal.FileChooser; where there is no portal,
/// the fallback's. Main thread.
class PortalFileChooser final : public FileChooser {
  public:
    /// Takes the name of a D-Bus connection. `parentWindow` gives the portal's name for the window
    /// in front, or nothing. The fallback must outlive this object.
    PortalFileChooser(const QString& connection, std::function<QString()> parentWindow,
                      FileChooser& fallback);
    ~PortalFileChooser() override;

    void choose(const FileChooserRequest& request,
                std::function<void(const QStringList& paths)> chosen) override;
    void chooseTarget(const FileTargetRequest& request,
                      std::function<void(const QString& path)> chosen) override;

  private:
    class Portal;
    std::unique_ptr<Portal> m_portal;
};

} // namespace halvane
