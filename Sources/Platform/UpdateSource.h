// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

/// A newer version of the program. Every text comes from outside: it is of any length and may
/// hold anything.
struct Update
{
    /// The source's own name for it.
    QString id;
    /// As the source writes it, such as "0.2.0-1"; empty where it does not tell.
    QString version;
    /// What is new; empty where it does not tell.
    QString notes;
    /// Other packages that would be changed along with the program.
    QStringList installs;
    QStringList updates;
    QStringList removes;
};

/// Why there is no answer, or no new version. Each has its own sentence for people.
enum class UpdateProblem {
    NotFromPackage,    ///< this copy came from nowhere that newer ones would come to
    NoService,         ///< what would look for packages is not installed or cannot be started
    ServiceEnded,      ///< it ended before it answered
    NoAnswer,          ///< it said nothing for too long
    Nonsense,          ///< its answer cannot be understood
    NotInstalled,      ///< no installed package holds this copy
    NoSource,          ///< the package was installed from a file, which no source follows
    NotAsked,          ///< the service looks by itself and has not told of a newer version
    SourcesUnreadable, ///< the sources' lists could not be renewed
    NoNetwork,
    Busy,          ///< another program holds the lists
    NotAuthorized, ///< the user may not, or did not prove who they are
    NotTrusted,    ///< not signed by anybody whom this system trusts
    DownloadFailed,
    NoSpace,
    Gone,        ///< this version is not offered any more
    HeldBack,    ///< other packages stand in the way of the newer version
    NothingDone, ///< the service reports success, and the old version is still there
    Other,
};

/// Why something did not work, and what a person can do.
struct UpdateFailure
{
    UpdateProblem problem = UpdateProblem::Other;
    /// What the service said itself, in its own words; may be empty.
    QString details;
    /// A command for a terminal that does by hand what failed; may be empty.
    QString command;
};

/// How far something is.
struct UpdateProgress
{
    enum class Phase {
        Preparing,
        WaitingForOthers,         ///< another program installs something
        WaitingForAuthentication, ///< the user is asked who they are
        Downloading,
        Installing,
    };
    Phase phase = Phase::Preparing;
    /// 0 to 100, of this phase alone. Absent while nobody can tell.
    std::optional<int> percentage;
    bool canCancel = true;
};

/// What came of something.
struct UpdateResult
{
    enum class Kind { UpToDate, Available, Installed, Cancelled, Failed };
    Kind kind = Kind::Failed;
    /// Of `Available`.
    Update update = {};
    /// Of `Failed`.
    UpdateFailure failure = {};
};

/// Something under way. Destroying it calls it off as far as that is possible; its handlers are
/// not called any more then.
class UpdateTask
{
public:
    virtual ~UpdateTask() = default;

    /// Asks for its end. What came of it is told as ever: it may have been done all the same.
    virtual void cancel() = 0;
};

/// Where newer versions of this copy of the program come from. Main thread only.
class UpdateSource : public QObject
{
    Q_OBJECT

public:
    /// Why it is asked.
    enum class Look {
        /// From time to time: what is known already, without traffic or questions.
        InBackground,
        /// The user waits: what is known is renewed first, and the answer is complete.
        ForUser,
    };

    /// Called from the event loop, never from within the call that it was given to.
    using ProgressHandler = std::function<void(const UpdateProgress &)>;
    /// Called once, likewise. It may destroy the task.
    using ResultHandler = std::function<void(const UpdateResult &)>;

    /// Begins to tell of changes. False when it cannot; it can still be asked.
    virtual bool start() = 0;

    virtual std::unique_ptr<UpdateTask> look(Look why, ProgressHandler progress,
                                             ResultHandler result) = 0;

    /// Installs what a look for the user has found.
    virtual std::unique_ptr<UpdateTask> install(const Update &update, ProgressHandler progress,
                                                ResultHandler result) = 0;

Q_SIGNALS:
    /// There may be another answer than before.
    void changed();
};
