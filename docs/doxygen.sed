# Rules between sections are no text.
/^ *\/\/ -{10,}$/d
# Comments in front of a declaration, and behind one.
s#^( *)//([^/]|$)#\1///\2#
# Rows of a table become items.
s#^( *)///   ([^ ])#\1/// - \2#
s#([;,{]) +// #\1 ///< #
