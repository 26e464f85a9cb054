#pragma once
// How the dock is used: what the user did is merged by what it was, counted, written to a payload file in batches and
// handed to the collector. Without the user's consent, which only the start of the process asks for, nothing is
// recorded, written or handed over. One object for the whole process; user-interface thread, COM initialised.

#include <cstdint>
#include <string>
#include <vector>

#include "content/Element.h"
#include "system/Windows.h"
#include "tracking/TrackRecord.h"

namespace lumenor {

class UsageTracker {
public:
  // The start of the process, in this order; the last three only when tracking is enabled by then.

  /// Reads what this machine is known by, making it at the first start. Needs no consent: nothing is told to anybody.
  void LoadAppId();

  /// Asks the collector's ini file whether the user agreed.
  void ReadOptIn();

  /// Takes the facts of the machine and this moment as the start of what the next payload tells of.
  void InitSessionInfo();

  /// Gives what comes a session of its own, whose records count from 1. Changes nothing where the platform has no new
  /// identifier to give.
  void StartSession();

  /// Reads when the next payload is due; in seven days where no time can be read.
  void LoadNextTransferTime();

  /// Whether the user agreed.
  bool IsEnabled() const { return enabled != 0; }

  // What the user does. Each may lead to a Flush, and raises as that does; the record then stands.

  /// The dock has come up.
  void TrackDockOpen();

  /// The dock is being closed.
  void TrackDockClose();

  /// A click on a button of the bar started `element`.
  void TrackIconClick(const Element &element);

  /// A click in a flyout started `element`.
  void TrackPopupClick(const Element &element);

  /// A button was added.
  void TrackIconAdd(const Element &element);

  /// A button was removed.
  void TrackIconDelete(const Element &element);

  /// A search was sent to a provider of the web.
  void TrackUrlSearch();

  /// A search was sent to the platform's help.
  void TrackHelpSearch();

  // What becomes of it. These raise HResultError when the platform fails; the records then stay.

  /// The periodic work: writes what has come together, closes the payload when it is due or too big, and begins another
  /// session when the day is over.
  void Flush();

  /// Writes the records to the payload, with its header when it is to be closed, and drops them. They stay when the
  /// file that is there is no payload.
  void WritePayload(bool close);

  /// Closes the payload and hands it over when it has grown too big. The time of the next transfer stays.
  void CheckPayloadSize();

  /// Names the closed payload by its checksum and starts the collector.
  void TransferPayload();

  /// Writes the next sequence number and the next transfer time to the registry; without a key to hold them, nothing.
  void SaveSettings();

  /// Makes the next payload due in seven days.
  void SetNextTransferTime();

  /// Whether the payload is due by now.
  bool IsTransferDue() const;

  /// Whether the local day on which the session began is over.
  bool IsSessionDayOver() const;

  /// What isn't written yet, in the order of the first times.
  const std::vector<TrackRecord> &GetRecords() const { return records; }

private:
  void Count(TrackRecord event);
  void Add(TrackRecord record);

  int enabled = 0;
  std::wstring appName;
  std::wstring version;
  std::wstring brand;
  std::wstring platform;
  std::wstring applicationId;
  SYSTEMTIME sessionStart{}; // UTC
  SYSTEMTIME sessionEnd{};   // UTC; zero until a payload is closed
  std::wstring sessionId;
  SYSTEMTIME sessionStartLocal{};
  std::uint32_t nextElementSeq = 1;
  std::uint32_t subSessionId = 1; // nothing changes it
  SYSTEMTIME nextTransferTime{};  // UTC
  std::vector<TrackRecord> records;
};

/// The tracker of this process.
inline UsageTracker usageTracker;

} // namespace lumenor
