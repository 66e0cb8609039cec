# Writes the pages of SOURCE to TARGET with one script and one style sheet, joined in the order in
# which index.html loads the single ones: a report on a slow server then needs few requests.
file(READ "${SOURCE}/index.html" page)

# Joins the files of the elements that match into one file, which element loads in their place.
function(join pattern file element)
    string(REGEX MATCHALL "${pattern}" elements "${page}")
    set(joined "")
    foreach(one IN LISTS elements)
        string(REGEX REPLACE ".*=\"([a-z]+/[a-z]+\\.[a-z]+)\".*" "\\1" source "${one}")
        file(READ "${SOURCE}/${source}" text)
        if(one MATCHES "media=\"print\"")
            set(text "@media print {\n${text}}\n")
        endif()
        string(APPEND joined "${text}")
        string(REPLACE "${one}" "${element}" page "${page}")
        set(element "")
    endforeach()
    file(WRITE "${TARGET}/${file}" "${joined}")
    set(page "${page}" PARENT_SCOPE)
endfunction()

# What an earlier build left there.
file(REMOVE_RECURSE "${TARGET}/script" "${TARGET}/style")
join("<script src=\"script/[a-z]+\\.js\"></script>\n" "script/report.js"
    "<script src=\"script/report.js\"></script>\n")
join("<link rel=\"stylesheet\" href=\"style/[a-z]+\\.css\"[^>]*>\n" "style/report.css"
    "<link rel=\"stylesheet\" href=\"style/report.css\">\n")
string(REGEX REPLACE "<!--[^>]*-->\n" "" page "${page}")
file(WRITE "${TARGET}/index.html" "${page}")
