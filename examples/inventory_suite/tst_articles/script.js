application.start("inventory");

for (const article of data.open("articles.tsv")) {
    find("name").type(article.field("article"));
    find("count").set("value", Number(article.field("count")));
    find("add").click();
    check.point("state", {record: article});
}
check.equal(find("inventory").get("totalCount"), 200);
