// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QStringList>

namespace brevok {

/// A standing search for applications by display name. Main thread; the folders are read in the background.
///
/// After start() it emits notification(DidStartGathering), then GatheringProgress whenever results arrive,
/// then DidFinishGathering once, and from then on DidUpdate within two seconds after an application appeared,
/// changed or went away, with its volume too. It never polls.
class ApplicationSearch : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ApplicationSearch)

public:
    enum class Notification { DidStartGathering, GatheringProgress, DidFinishGathering, DidUpdate };
    Q_ENUM(Notification)

    explicit ApplicationSearch(QObject *parent = nullptr);
    ~ApplicationSearch() override;

    /// Starts the search for applications whose display name matches one of @p namePatterns, in which "*"
    /// stands for any text and case counts. Called once.
    virtual void start(const QStringList &namePatterns) = 0;
    virtual void stop() = 0;

    /// The paths of the matching application bundles found so far, in a stable order.
    [[nodiscard]] virtual QStringList results() const = 0;
    /// The folders that are searched.
    [[nodiscard]] virtual QStringList folders() const = 0;

Q_SIGNALS:
    void notification(brevok::ApplicationSearch::Notification notification);
    /// A volume was mounted or unmounted, anywhere. What that brings or takes of the results is told as well.
    void volumesChanged();
};

} // namespace brevok
