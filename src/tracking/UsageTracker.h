#pragma once
// Usage tracking: equal actions of the user are merged and counted, written to a payload file in batches and passed to
// the collector. Without the user's consent, which is read once at the start of the process, nothing is recorded,
// written or passed on. One object for the whole process; user-interface thread, COM initialised.

#include <cstdint>
#include <string>
#include <vector>

#include "content/Element.h"
#include "system/Windows.h"
#include "tracking/TrackRecord.h"

namespace lumenor {

class UsageTracker {
public:
  // The start of the process, in this order; the last three only when tracking is enabled.

  /// Reads the identity of this machine, creating it at the first start. Needs no consent: nothing leaves the machine.
  void LoadAppId();

  /// Reads from the collector's ini file whether the user agreed.
  void ReadOptIn();

  /// Reads the facts about the machine, and takes this moment as the start of the next payload.
  void InitSessionInfo();

  /// Begins a session, whose records count from 1. Changes nothing when the platform has no new identifier.
  void StartSession();

  /// Reads when the next payload is due; in seven days where no time can be read.
  void LoadNextTransferTime();

  bool IsEnabled() const { return enabled != 0; }

  // What the user does, each recorded without a check whether it succeeded. Each may lead to a Flush, and raises as
  // that does; the record is then kept.

  void TrackDockOpen();
  void TrackDockClose();
  void TrackIconClick(const Element &element);  // a button of the bar
  void TrackPopupClick(const Element &element); // a row of a flyout
  void TrackIconAdd(const Element &element);
  void TrackIconDelete(const Element &element);
  void TrackUrlSearch();
  void TrackHelpSearch();

  // Writing and transfer. These raise HResultError when the platform fails; the records are then kept.

  /// The periodic work: writes the records, closes the payload when it is due or too big, and begins another session
  /// when the day is over.
  void Flush();

  /// Writes the records to the payload, with its header when it is to be closed, and drops them. They stay when the
  /// file that is there is no payload.
  void WritePayload(bool close);

  /// Closes the payload and transfers it when it is too big. The time of the next transfer doesn't change.
  void CheckPayloadSize();

  /// Names the closed payload by its checksum and starts the collector.
  void TransferPayload();

  /// Writes the next sequence number and the next transfer time to the registry, if there is a key for them.
  void SaveSettings();

  /// Makes the next payload due in seven days.
  void SetNextTransferTime();

  bool IsTransferDue() const;

  /// Whether the local day on which the session began is over.
  bool IsSessionDayOver() const;

  /// The records that aren't written yet, in the order of their first times.
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
  SYSTEMTIME sessionEnd{};   // likewise; all zero until a payload is closed
  std::wstring sessionId;
  SYSTEMTIME sessionStartLocal{};
  std::uint32_t nextElementSeq = 1;
  std::uint32_t subSessionId = 1; // always
  SYSTEMTIME nextTransferTime{};  // UTC
  std::vector<TrackRecord> records;
};

/// The tracker of this process.
inline UsageTracker usageTracker;

} // namespace lumenor
