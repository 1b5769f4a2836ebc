# The tests that are left out, and why: a difference of what stands in for the platform here, or a
# promise of the embedded realisation alone. They are right on the platform.

set(bridging_differences
  # This Foundation drops a byte order mark and refuses half of a pair of surrogates.
  All/TextBridging.LosesNothingThereAndBack/4
  TextBridging.UnpairedSurrogateBecomesAReplacement
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
  LowerCase.DependsOnTheContext)

set(store_differences
  # The layer says in other words that the platform refused.
  Finish.OfAPurchasingOneIsRefusedWithALine
  # Asks for the very same view; the layer makes views anew, which are equal.
  Purchase.OutcomeChangesTheTransactionInPlace
  # Compares with an entry of the embedded catalogue; here the platform's product stands between.
  ProductsRequest.AnswersWithTheProductsOfTheCatalogue)

set(library_differences)
