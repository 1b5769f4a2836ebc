# The tests that are left out, and why: a difference of what stands in for the platform here, or a
# promise of the embedded realisation alone. They are right on the platform.

set(bridging_differences
  # This Foundation drops a byte order mark and refuses half of a pair of surrogates.
  All/TextBridging.LosesNothingThereAndBack/4
  TextBridging.UnpairedSurrogateBecomesAReplacement
  # It writes beyond its own buffer for a number of more than a hundred digits.
  All/DecimalBridging.IsExactThereAndBack/9
  # Its errors have codes of 32 bits.
  ErrorBridging.CodesOfOursAreNotCut)

set(foundation_differences
  # Expects the words of the embedded realisation's JSON reader behind "not JSON: ".
  JSONDecoder.SaysThatTheTextIsNoJSON
  # This Foundation says "XXX", for no currency.
  Locale.WithoutRegionHasNoCurrency
  Locale.OfAnUnknownRegionHasNoCurrency
  # Its lower case goes character by character, and knows no context.
  LowerCase.CoversAllScripts
  LowerCase.OfOneCharacterMayBeTwo
  LowerCase.DependsOnTheContext
  # Its encodings are those of iconv, with other names, and have characters where the platform's lack
  # them.
  StringEncoding.HasThePlatformsNames
  StringEncoding.DecodesASampleOfEach
  StringEncoding.AByteThatTheEncodingLacksMakesTheTextAbsent
  # Its file manager reports by other domains and codes, or by none, and finds a file good enough
  # where a folder was wanted. Another text than the embedded realisation's says what failed.
  FileManagerDisks.MovingIntoAMissingFolderOfAnotherFileSystemIsAnError
  FileManagerDisks.AFullDiskIsAnErrorThatLosesNothingAndLeavesNothing
  FileManagerTest.RemovingNothingIsAnError
  FileManagerTest.RemovingWithoutPermissionIsAnError
  FileManagerTest.RemovingSomebodyElsesFileFromASharedFolderIsAnError
  FileManagerTest.CreatesTheFoldersAboveOnlyWhenAsked
  FileManagerTest.AFolderThatIsThereIsFineOnlyWithThoseAbove
  FileManagerTest.AFileInThePlaceOfTheFolderIsAnError
  FileManagerTest.CreatingWithoutPermissionIsAnError
  FileManagerTest.CopyingAFolderIntoItselfIsAnError
  FileManagerTest.CopyingIntoAMissingFolderLeavesNothingAnywhere
  FileManagerTest.CopyingNothingIsAnError
  FileManagerTest.MovingIntoAMissingFolderIsAnError
  FileManagerTest.MovingNothingIsAnError
  FileManagerTest.MovingIntoAFolderWithoutPermissionIsAnErrorAndLosesNothing
  FileManagerTest.MovingOutOfAFolderWithoutPermissionLeavesNothingNew
  FileManagerTest.ErrorNamesThePathAndHasTheSystemsOwnBeneath
  FileManagerTest.ErrorSaysBothPlacesAndTheReason
  FileManagerTest.ANameThatIsTooLongIsAnError
  # Its formatters have a zone of their own to begin with, whatever TZ says.
  ToDate.AZoneThatIsUnknownLeavesTheSystemsOwn
  # It copies times to the microsecond, and a move of its own replaces what came in between.
  FileManagerDisks.KeepsTheTimeAndThePermissionsOfAFile
  FileManagerThreads.OfTwoMovesToOnePlaceOneFails)

set(store_differences
  # The layer says in other words that the platform refused.
  Finish.OfAPurchasingOneIsRefusedWithALine
  # Ask for the very same view; the layer makes views anew, which are equal.
  Purchase.OutcomeChangesTheTransactionInPlace
  Downloads.TransactionHasTheSameOneEveryTime
  # Compare with an entry of the embedded catalogue; here the platform's product stands between.
  ProductsRequest.AnswersWithTheProductsOfTheCatalogue
  StorePurchase.ComesWithThePaymentAndTheProduct)
