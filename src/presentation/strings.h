// SPDX-License-Identifier: MIT
#pragma once

#include "presentation/l10n.h"

#include <QObject>

#include <functional>

namespace halvane {

/// The texts as properties that a view can bind to: each key is one. The sentences are functions of
/// the property `sentences`, so that a binding to either is evaluated again when the language
/// changes. Holds no language of its own. Main thread.
class Strings : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        halvane::ResolvedLanguage resolvedLanguage READ resolvedLanguage NOTIFY languageChanged)
    Q_PROPERTY(halvane::Strings* sentences READ sentences NOTIFY languageChanged)
#define HALVANE_L10N_PROPERTY(key, english, chinese)                                               \
    Q_PROPERTY(QString key READ key NOTIFY languageChanged)
    HALVANE_L10N_TABLE(HALVANE_L10N_PROPERTY)
#undef HALVANE_L10N_PROPERTY

  public:
    /// Asks the function for the language whenever a text is read.
    explicit Strings(std::function<ResolvedLanguage()> language, QObject* parent = nullptr)
        : QObject(parent)
        , m_language(std::move(language)) {
    }

    [[nodiscard]] ResolvedLanguage resolvedLanguage() const {
        return m_language();
    }
    Strings* sentences() {
        return this;
    }

#define HALVANE_L10N_GETTER(key, english, chinese)                                                 \
    [[nodiscard]] QString key() const {                                                            \
        return L10n::text(L10nKey::key, m_language());                                             \
    }
    HALVANE_L10N_TABLE(HALVANE_L10N_GETTER)
#undef HALVANE_L10N_GETTER

    Q_INVOKABLE [[nodiscard]] QString playbackFailure(const QString& trackTitle) const;
    Q_INVOKABLE [[nodiscard]] QString downloadingTrack(const QString& trackTitle) const;
    Q_INVOKABLE [[nodiscard]] QString maintenanceBadge(int count) const;
    Q_INVOKABLE [[nodiscard]] QString artistSummary(int albums, int tracks) const;
    Q_INVOKABLE [[nodiscard]] QString visibleCount(int count) const;
    Q_INVOKABLE [[nodiscard]] QString selectedCount(int count) const;
    Q_INVOKABLE [[nodiscard]] QString discHeading(int disc) const;
    Q_INVOKABLE [[nodiscard]] QString confirmRemoveMissing(int count) const;
    Q_INVOKABLE [[nodiscard]] QString confirmRemoveDuplicates(int groups) const;
    Q_INVOKABLE [[nodiscard]] QString cloudDownloadStarted(int count) const;
    Q_INVOKABLE [[nodiscard]] QString playlistCount(int count) const;
    Q_INVOKABLE [[nodiscard]] QString importResult(int added, int skipped) const;
    Q_INVOKABLE [[nodiscard]] QString importReading(double part) const;
    Q_INVOKABLE [[nodiscard]] QString albumLength(double seconds) const;
    Q_INVOKABLE [[nodiscard]] QString loveTrack(const QString& trackTitle) const;
    Q_INVOKABLE [[nodiscard]] QString dialogTitle(const QString& command) const;
    Q_INVOKABLE [[nodiscard]] QString trackCount(int count) const;
    Q_INVOKABLE [[nodiscard]] QString placeName(halvane::SidebarItem item) const;
    Q_INVOKABLE [[nodiscard]] QString languageName(halvane::AppLanguage setting) const;

  Q_SIGNALS:
    /// Texts may read differently now: the setting changed, or the system's languages may have.
    void languageChanged();

  private:
    std::function<ResolvedLanguage()> m_language;
};

} // namespace halvane
