#include "shell/web_pages.h"

const char* const kProductPage = DAYBRIX_PRODUCT_PAGE;
const char* const kCompanyPage = DAYBRIX_COMPANY_PAGE;
