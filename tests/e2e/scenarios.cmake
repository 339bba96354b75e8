# Each scenario is one ctest entry: "Suite.Test" of the e2e_tests executable.
set(MAVU_E2E_SCENARIOS
    Startup.NoOptionsNoDeviceReportsInOrder
    Startup.SecondInstanceEndsAtOnceAndChangesNothing
    Startup.ExitEndsWithTheLoopsExitCode
    Startup.CloseBoxEndsTheProgram
    Startup.MissingIconsAreHarmless
    Startup.ProgramNameWithoutMavuCannotMakeTheDefaultFolders
    Messages.SaveWritesTheWindowTextToLogFiles
    Messages.SaveAndClearLeavesOnlyTheSavedLine
    Messages.AboutWritesThreeLines
    Messages.TheWindowFollowsTheNewestLine
    Screenshots.MainAndUserMessagesWindows
    Options.SavedPositionsApplyAtStartUp
    Options.UnreadableFileIsReportedAndDefaultsStand
    Options.FallbackFileIsReadWhenTheFirstIsDamaged
    Options.SetWindowPositionsSavesWhereTheWindowsStand
    Options.AccentedFolderAndCameraSurviveSaveRestartAndSaveAgain
    Video.WebcamPreviewWithVmr9SizesTheWindowToTheFormat
    Video.EvrTakesNoYuy2OnThisPlatformAndSaysSo
    Video.Vmr7WithoutQualityInterfaceIsRefused
    Recording.ManualStartWaitStopWritesTheAviAndItsReport
    Events.OneEventRecordsCentredOnItsMoment
    Events.OneEventRecordsCentredOnItsMomentInNewYork
    Events.HandWrittenEventWithAnAccentedCommentIsListedAndRecorded
    Events.LoadingSaysWhatOverlapsAndPassesOverWhatIsOver
    Events.ManualRecordingDuringACountdownCancelsItAndStopReloads
    Events.StopDuringAnEventAsksAndTheEventIsNotArmedAgain
    Events.ShutdownCountsDownFromThirtyAndCancelStopsIt
    Events.HibernateRequestIsDroppedWhereThePlatformCannotHibernate
)

# Scenarios of minutes, run by: ctest -L long
set(MAVU_E2E_LONG_SCENARIOS
    Events.ShutdownAtTheEndOfTheCountIsWhatThePlatformGives
    Events.TwoEventsAMinuteApartAreBothRecordedInOrder
)
