// The pages that the Help menu opens in the browser.
#pragma once

// Addresses, chosen when the program is built (DAYBRIX_PRODUCT_PAGE, DAYBRIX_COMPANY_PAGE); empty: there is
// no such page.
extern const char* const kProductPage;
extern const char* const kCompanyPage;
